#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "engine/export/tool_run.h"

namespace velora::engine {
namespace {

/// The words of a file as another program copies them.
std::string copied(const std::filesystem::path& file)
{
    const ToolRun run = run_tool("pdftotext -raw '" + file.string() + "' -");
    EXPECT_EQ(run.status, 0) << run.output;
    return run.output.substr(0, run.output.find_last_not_of("\n\f") + 1);
}

TEST(PdfWords, ATextKeepsItsLettersBehindOneThatWasTurnedOrCut)
{
    struct Case {
        const char* why;
        void (*between)(SamplePages&, Style);
    };
    for (const auto& c : {
             Case{"a turned text",
                  [](SamplePages&sample, Style style) {
                      style.rotation = Rotation::Left;
                      sample.add_text({20, 60, 20, 100}, "aside", style);
                  }},
             Case{"a text that is cut",
                  [](SamplePages&sample, Style style) {
                      sample.add_text({20, 60, 10, 12}, "between", style);
                  }},
             Case{"a drawing",
                  [](SamplePages&sample, Style style) {
                      Drawing drawing{100, 20, {Label{{0, 10}, "label", style.font, kBlack, HorizontalAlign::Left, 0}}};
                      sample.add({20, 60, 100, 20}, style, Graphic{std::make_shared<const Drawing>(drawing)});
                  }},
         }) {
        for (const float size : {10.0F, 14.0F}) {
            SamplePages sample;
            Style other = sample.style();
            other.font.bold = true;
            other.font.size = size;
            sample.add_text({20, 20, 200, 12}, "the first line", sample.style());
            c.between(sample, other);
            sample.add_text({20, 200, 200, 12}, "second line", sample.style());
            const std::string words = copied(sample.print("turned.pdf"));
            EXPECT_TRUE(words.starts_with("the first line") && words.ends_with("\nsecond line")) << c.why << words;
        }
    }
}

}  // namespace
}  // namespace velora::engine

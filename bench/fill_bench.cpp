#include <benchmark/benchmark.h>

#include "engine/definition/reader.h"
#include "engine/fill/fill.h"
#include "engine/text/font_store.h"
#include "engine/text/measurer.h"

namespace velora::engine {
namespace {

/// Fifty rows of five texts fill a page; one font, four styles.
constexpr const char* kDense = R"(<jasperReport name="dense" pageWidth="595" pageHeight="842" columnWidth="555"
    leftMargin="20" rightMargin="20" topMargin="20" bottomMargin="20">
<style name="d" default="true" fontName="DejaVu Sans" fontSize="8"/><style name="b" style="d" bold="true"/>
<style name="r" style="d" forecolor="#202080"/><style name="i" style="d" fontSize="7"/>
<field name="code" class="java.lang.String"/><field name="name" class="java.lang.String"/>
<field name="kind" class="java.lang.String"/><field name="price" class="java.lang.Double"/>
<field name="count" class="java.lang.Integer"/>
%GROUP%<detail><band height="16">
<element kind="textField" x="0" y="0" width="100" height="14"><expression>$F{code}</expression></element>
<element kind="textField" x="100" y="0" width="180" height="14" style="b"><expression>$F{name}</expression></element>
<element kind="textField" x="280" y="0" width="100" height="14" style="r"><expression>$F{kind}</expression></element>
<element kind="textField" x="380" y="0" width="90" height="14" style="i" pattern="#,##0.00" hTextAlign="Right">
<expression>$F{price}</expression></element>
<element kind="textField" x="470" y="0" width="80" height="14"><expression>$F{count}</expression></element>
</band></detail>%FOOTER%</jasperReport>)";

constexpr const char* kPageTotal =
    R"(<pageFooter height="16"><element kind="textField" x="0" y="0" width="100" height="14" evaluationTime="Report">
       <expression>"of " + $V{PAGE_NUMBER}</expression></element></pageFooter>)";
constexpr const char* kGroup = R"(<group name="Kind"><expression>$V{REPORT_COUNT} / 10</expression></group>)";

class ManyRows : public TableSource {
public:
    explicit ManyRows(size_t count) : count_(count)
    {
        for (int row = 0; row < 1000; ++row) {
            rows_.push_back({Value("ITEM-" + std::to_string(row * 37)),
                             Value("Description of item " + std::to_string(row)),
                             Value("Category " + std::to_string(row % 17)), Value(row * 13.37), Value(row * 3)});
        }
    }
    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return at_ < count_ && ++at_; }
    void rewind() override { at_ = 0; }
    [[nodiscard]] const Value& cell(size_t field) const override { return rows_[(at_ - 1) % rows_.size()][field]; }

private:
    std::vector<Field> fields_{{"code", Value::Type::Text},
                               {"name", Value::Type::Text},
                               {"kind", Value::Type::Text},
                               {"price", Value::Type::Double},
                               {"count", Value::Type::Integer}};
    std::vector<std::vector<Value>> rows_;
    size_t count_;
    size_t at_ = 0;
};

class CountingSink : public PageSink {
public:
    void begin(const Document&) override {}
    void page(Page&& page) override { benchmark::DoNotOptimize(pages += !page.elements.empty()); }
    void end() override {}
    size_t pages = 0;
};

void fill_pages(benchmark::State& state, const std::string& group, const std::string& footer)
{
    std::string xml = kDense;
    xml.replace(xml.find("%GROUP%"), 7, group);
    xml.replace(xml.find("%FOOTER%"), 8, footer);
    std::vector<Warning> warnings;
    const CompiledReport report(std::make_shared<model::Definition>(read_definition(xml, warnings)));
    FontStore fonts(std::string(VELORA_SOURCE_DIR) + "/fonts");
    Measurer measurer(fonts);
    ManyRows table(static_cast<size_t>(state.range(0)));
    size_t pages = 0;
    for (auto _ : state) {
        CountingSink sink;
        fill(report, table, measurer, {}, sink);
        pages += sink.pages;
    }
    state.counters["pages/s"] = benchmark::Counter(static_cast<double>(pages), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(fill_pages, dense, "", "")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fill_pages, page_of_pages, "", kPageTotal)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fill_pages, grouped, kGroup, "")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora::engine

BENCHMARK_MAIN();

#include "program.h"
#include "reports/kinds.h"
#include "support/word_check.h"

namespace velora::testing {
namespace {

class SampleWords : public HostTest {
protected:
    /// The ids of all quotes in the sample's table of them.
    static std::vector<std::string> quote_ids()
    {
        std::vector<std::string> ids;
        std::istringstream table(file_text(fs::path(VELORA_SOURCE_DIR) / "samples/velora/Quote.csv"));
        std::string row;
        std::getline(table, row);  // the head
        while (std::getline(table, row)) {
            if (const std::string id = row.substr(0, row.find(',')); std::stoi("0" + id) > 0) ids.push_back(id);
        }
        return ids;
    }

    /// All documents that a definition of the kind gives, in every format.
    std::vector<readers::Formats> documents(const ReportKind& kind, std::string_view definition)
    {
        std::map<std::string, readers::Formats> by_name;
        for (const char* format : {"pdf", "html", "xls", "doc", "rtf", "txt", "xml"}) {
            const fs::path folder = scratch(format);
            fs::remove_all(folder);
            fs::create_directories(folder);
            std::vector<std::string> command{std::string(kind.name),
                                             "--export",
                                             format,
                                             "--output",
                                             folder.string() + "/",
                                             "--definition",
                                             (company() / "Reports" / definition).string() + ".rpt"};
            if (kind.criteria.quote) std::ranges::copy(quote_ids(), std::back_inserter(command));
            if (kind.marks) command.emplace_back("--no-mark");
            const Ran ran = run(in_company(company(), command));
            EXPECT_EQ(ran.status, 0) << kind.name << " " << format << ran.err;
            for (const auto& file : fs::directory_iterator(folder)) by_name[file.path().stem()][format] = file.path();
        }
        std::vector<readers::Formats> all;
        for (auto& [name, files] : by_name) all.push_back(std::move(files));
        return all;
    }
};

TEST_F(SampleWords, EveryFormatOfEveryDocumentSaysWhatItsPdfSays)
{
    for (const ReportKind& kind : report_kinds()) {
        if (kind.print == nullptr || kind.criteria.file) continue;
        for (const std::string_view definition : kind.shipped) {
            if (definition.empty()) continue;
            const auto all = documents(kind, definition);
            EXPECT_GE(all.size(), kind.criteria.quote ? quote_ids().size() : 1U) << kind.name;
            EXPECT_EQ(readers::difference_of_words(all), "") << kind.name << ", " << definition;
        }
    }
}

}  // namespace
}  // namespace velora::testing

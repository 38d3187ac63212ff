#include "forms/frm_print.h"

#include <regex>

#include "session/error_messengers.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora::forms {

namespace {

constexpr int kHeight = 3200;
constexpr int kMostCopies = 999;
constexpr size_t kLongestPages = 200;

bool are_pages(const std::string& text)
{
    static const std::regex kPages(R"(\s*\d+\s*(-\s*\d+\s*)?(,\s*\d+\s*(-\s*\d+\s*)?)*)");
    return text.size() <= kLongestPages && std::regex_match(text, kPages);
}

}  // namespace

frmPrint::frmPrint(SessionState& state, const PrintQuestion& question)
    : Form("frmPrint"), state_(state), question_(question)
{
    set_caption("Print");
    set_height(kHeight);
    cboPrinter.set_label("Printer");
    cboPrinter.add("Printer of the report");
    for (const std::string& printer : question_.printers) cboPrinter.add(printer);
    optAll.set_caption("All pages");
    optPage.set_caption("Page " + std::to_string(question_.page));
    optPages.set_caption("Pages");
    tbxPages.set_label("Pages");
    tbxPages.set_tip("Pages and ranges in rising order: 1-3,7");
    tbxCopies.set_label("Copies");
    lvbOK.set_caption("Print");
    lvbOK.set_tip("Print the pages");
    lvbCancel.set_caption("Cancel");
    lvbCancel.set_tip("Close without printing");
    lvbOK.shortcut = kAcceptKey;
    lvbCancel.shortcut = kGiveUpKey;
    wire();
}

void frmPrint::wire()
{
    const auto frees_pages = [this] { tbxPages.set_enabled(optPages.value()); };
    optAll.click.handle("optAll_Click", frees_pages);
    optPage.click.handle("optPage_Click", frees_pages);
    optPages.click.handle("optPages_Click", frees_pages);
    lvbOK.click.handle("lvbOK_Click", [this] { lvbOK_Click(); });
    lvbCancel.click.handle("lvbCancel_Click", [this] { unload(); });
}

void frmPrint::load()
{
    run("Form_Load", [this] {
        cboPrinter.select(0);
        optAll.set_value(true);
        tbxCopies.set_text("1");
    });
}

void frmPrint::refuse(const std::string& text, TextBox& box)
{
    tell(state_, {"Printing", text, Icon::Exclamation});
    enter(box);
    box.select_all();
}

void frmPrint::lvbOK_Click()
{
    PrintWish wish;
    const double copies = leading_number(trimmed(tbxCopies.text()));
    if (copies < 1 || copies > kMostCopies) {
        return refuse("The number of copies is one from 1 to " + std::to_string(kMostCopies) + ".", tbxCopies);
    }
    wish.copies = static_cast<int>(copies);
    if (optPage.value()) wish.pages = std::to_string(question_.page);
    if (optPages.value()) {
        wish.pages = trimmed(tbxPages.text());
        if (!are_pages(wish.pages)) {
            return refuse("Pages are written as 1-3,7: pages and ranges of pages in rising order.", tbxPages);
        }
    }
    const auto printer = static_cast<size_t>(cboPrinter.selected());
    if (printer > 0) wish.device = question_.printers.at(printer - 1);
    wish_ = wish;
    unload();
}

}  // namespace velora::forms

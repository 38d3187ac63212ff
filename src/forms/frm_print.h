#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/controls/text_box.h"
#include "platform/printers.h"
#include "session/session_state.h"

namespace velora::forms {

struct PrintQuestion {
    std::vector<std::string> printers;
    size_t page = 1;  ///< the one in sight, from 1
};

/// Asks which pages go to paper, how often and on which printer.
class frmPrint final : public Form {
public:
    frmPrint(SessionState& state, const PrintQuestion& question);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &cboPrinter; }

    /// What was chosen; none when it was cancelled.
    [[nodiscard]] const std::optional<PrintWish>& wish() const { return wish_; }

    DropDown cboPrinter{*this, "cboPrinter"};
    OptionButton optAll{*this, "optAll"};
    OptionButton optPage{*this, "optPage"};
    OptionButton optPages{*this, "optPages"};
    TextBox tbxPages{*this, "tbxPages"};
    TextBox tbxCopies{*this, "tbxCopies"};
    Button lvbOK{*this, "lvbOK"};
    Button lvbCancel{*this, "lvbCancel"};

private:
    void wire();
    void lvbOK_Click();
    void refuse(const std::string& text, TextBox& box);

    SessionState& state_;
    PrintQuestion question_;
    std::optional<PrintWish> wish_;
};

}  // namespace velora::forms

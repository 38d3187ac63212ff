#pragma once

#include <string>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "session/session_state.h"

namespace velora::forms {

class FormDesk;

/// Adds a definition to the list that is open on the selection form.
class frmAdd final : public Form {
public:
    explicit frmAdd(FormDesk& desk);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &optPipe; }

    Label lblInfo{*this, "lblInfo"};
    OptionButton optPipe{*this, "optPipe"};
    DropDown cboPipe{*this, "cboPipe"};
    OptionButton optCustom{*this, "optCustom"};
    Label lblFile{*this, "lblFile"};
    TextBox txtFile{*this, "txtFile"};
    Button lvbBrowse{*this, "lvbBrowse"};
    Button lvbOK{*this, "lvbOK"};
    Button lvbCancel{*this, "lvbCancel"};

private:
    void wire();
    void Form_Load();
    void fill_kinds();
    void optPipe_Click();
    void optCustom_Click();
    void cboPipe_Click();
    void lvbBrowse_Click();
    void txtFile_GotFocus();
    void lvbOK_Click();
    bool refuse(const MessageBox& box);
    bool can_be_added();

    FormDesk& desk_;
    SessionState& state_;
    std::string m_File;
    std::string m_Name;
    std::string m_Type;
    bool m_Changed = false;
};

}  // namespace velora::forms

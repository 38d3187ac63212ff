#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/finder_rows.h"

namespace velora::forms {

/// Picks one of many: a search over all texts while it is typed, a list of what is found.
class frmFinder final : public Form {
public:
    frmFinder(SessionState& state, const std::string& caption, std::unique_ptr<FinderRows> source,
              const std::string& search);
    void load() override;
    [[nodiscard]] Control* first_focus() override { return &tbxSearch; }

    /// What the chosen row stands for; blank when the form was left without a choice.
    [[nodiscard]] const std::string& chosen() const { return chosen_; }

    TextBox tbxSearch{*this, "tbxSearch"};
    ListView lvwRows{*this, "lvwRows"};
    Button lvbOK{*this, "lvbOK"};
    Button lvbCancel{*this, "lvbCancel"};

private:
    /// Runs what reads rows under the name of the procedure.
    void read(const char* procedure, const std::function<void()>& work);
    void search();
    bool add_page();
    void lvbOK_Click();

    SessionState& state_;
    std::unique_ptr<FinderRows> source_;
    std::vector<std::string> keys_;  ///< of the rows, in their order
    std::string chosen_;
    size_t column_ = 0;
    bool descending_ = false;
};

}  // namespace velora::forms

#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "forms/controls/control.h"

namespace velora::forms {

/// Controls of one name, told apart by an index.
template <class Sort>
class ControlArray {
public:
    /// One member for each frame of `around`; a null stands for the form itself.
    ControlArray(ControlHolder& form, const std::string& name, std::initializer_list<const Control*> around)
    {
        for (const Control* frame : around) add(form, name, frame);
    }
    /// So many members in one frame, or on the form.
    ControlArray(ControlHolder& form, const std::string& name, size_t count, const Control* around = nullptr)
    {
        while (members_.size() < count) add(form, name, around);
    }

    [[nodiscard]] Sort& operator[](size_t index) const { return *members_.at(index); }
    [[nodiscard]] size_t size() const { return members_.size(); }

private:
    void add(ControlHolder& form, const std::string& name, const Control* around)
    {
        members_.push_back(std::make_unique<Sort>(form, name + "(" + std::to_string(members_.size()) + ")", around));
    }

    std::vector<std::unique_ptr<Sort>> members_;
};

}  // namespace velora::forms

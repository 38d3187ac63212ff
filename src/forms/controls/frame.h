#pragma once

#include "forms/controls/control.h"

namespace velora::forms {

/// A part with a caption only.
class Captioned : public Control {
public:
    using Control::Control;

    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(const std::string& caption);

private:
    std::string caption_;
};

class Label final : public Captioned {
public:
    using Captioned::Captioned;
    [[nodiscard]] bool takes_focus() const override { return false; }
    void accept(ControlVisitor& visitor) const override;
};

/// Holds other controls; hidden or disabled it hides or disables them all.
class Frame final : public Captioned {
public:
    using Captioned::Captioned;
    [[nodiscard]] bool takes_focus() const override { return false; }
    void accept(ControlVisitor& visitor) const override;

    /// Where the frame stands in its form, in twips.
    struct Place {
        int top = 0, left = 0, height = 0;
        bool operator==(const Place&) const = default;
    };
    [[nodiscard]] const Place& place() const { return place_; }
    void set_place(const Place& place);

private:
    Place place_;
};

}  // namespace velora::forms

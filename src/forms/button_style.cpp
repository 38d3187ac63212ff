#include "forms/button_style.h"

#include "forms/controls/buttons.h"

namespace velora::forms {

namespace {

constexpr uint32_t kButtonText = 0x80000012;
constexpr uint32_t kButtonFace = 0x8000000F;

void apply_newer_look(Button& button)
{
    if (button.ButtonType == 2) {
        button.ButtonType = 3;
        button.MouseOver = kButtonText;
    } else if (button.ButtonType == 7) {
        button.ButtonType = 9;
    }
}

}  // namespace

void Apply_ButtonStyle(const SessionState& state, Form& form)
{
    for (Control* control : form.controls()) {
        auto* button = dynamic_cast<Button*>(control);
        if (button == nullptr) continue;
        if (state.gWinXP) {
            apply_newer_look(*button);
        } else {
            button->BackColor = kButtonFace;
        }
    }
}

}  // namespace velora::forms

#pragma once

#include "forms/controls/frame.h"

namespace velora::forms {

/// The part of the viewer on which the pages are painted.
class PageArea final : public Captioned {
public:
    using Captioned::Captioned;
    void accept(ControlVisitor& visitor) const override;
};

}  // namespace velora::forms

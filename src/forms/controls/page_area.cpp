#include "forms/controls/page_area.h"

#include "forms/controls/control_visitor.h"

namespace velora::forms {

void PageArea::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms

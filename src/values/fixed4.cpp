#include "values/fixed4.h"

#include <cmath>
#include <limits>

#include "values/fault.h"

namespace velora {

Fixed4 Fixed4::from(double value)
{
    const double scaled = std::nearbyint(value * 10000.0);  // the default rounding mode is half to even
    if (!(std::abs(scaled) < 9223372036854775807.0)) throw fault::overflow();
    return from_units(static_cast<int64_t>(scaled));
}

Fixed4 operator+(Fixed4 left, Fixed4 right)
{
    int64_t sum = 0;
    if (__builtin_add_overflow(left.units(), right.units(), &sum)) throw fault::overflow();
    return Fixed4::from_units(sum);
}

}  // namespace velora

// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDotProduct.h"

namespace orvane
{

ZDotProduct::Function ZDotProduct::Fastest() noexcept
{
    return Plain();
}

}  // namespace orvane

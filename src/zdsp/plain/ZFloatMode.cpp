// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFloatMode.h"

namespace orvane
{

ZFloatMode::ZFloatMode() noexcept
    : mBefore(0)
{
}

ZFloatMode::~ZFloatMode() = default;

}  // namespace orvane

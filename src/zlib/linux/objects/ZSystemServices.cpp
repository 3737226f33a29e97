// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZSystemServices.h"

namespace orvane
{

bool GetWindowsVersion(std::int32_t& /*major*/, std::int32_t& /*minor*/)
{
    return false;
}

}  // namespace orvane

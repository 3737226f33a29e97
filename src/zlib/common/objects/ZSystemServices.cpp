// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZSystemServices.h"

#include <cstdlib>

namespace orvane
{

namespace
{

bool isWindowsMajor(std::int32_t wanted)
{
    std::int32_t major = 0;
    std::int32_t minor = 0;
    return GetWindowsVersion(major, minor) && major == wanted;
}

}  // namespace

bool ShowMessageBox(std::int32_t kind, bool exitAfter, const ZString& title, const ZString& text)
{
    ZMessageBox::Show(static_cast<ZMessageBox::Kind>(kind), text.IsEmpty() ? ZString() : title,
                      text);
    if (exitAfter)
        std::exit(-1);
    return true;
}

bool IsWindowsMajor6()
{
    return isWindowsMajor(6);
}

bool IsWindowsMajor5()
{
    return isWindowsMajor(5);
}

}  // namespace orvane

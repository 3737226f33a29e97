// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZBrowserLaunch.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

/// True when the text continues after the lower-case prefix, which is compared without case.
bool beginsWith(std::string_view text, std::string_view prefix)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return text.size() > prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [&](char expected, char c) { return lower(c) == expected; });
}

}  // namespace

ZBrowserLaunch::ZBrowserLaunch(std::string_view address)
    : mAddress(address)
    , mThread("launch browser thread", &ZBrowserLaunch::OpenAddress, this)
{
    assert(IsWebAddress(address));
    mThread.Resume();
}

bool ZBrowserLaunch::IsWebAddress(std::string_view address)
{
    const auto printable = [](unsigned char byte) { return byte > ' ' && byte != 0x7f; };
    return (beginsWith(address, "http://") || beginsWith(address, "https://")) &&
           std::all_of(address.begin(), address.end(), printable);
}

}  // namespace orvane

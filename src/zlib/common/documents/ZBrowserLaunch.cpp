// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZBrowserLaunch.h"

#include <algorithm>

namespace orvane
{

namespace
{

bool beginsWith(std::string_view text, std::string_view lowerCase)
{
    const auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; };
    return text.size() > lowerCase.size() &&
           std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                      [&](char b, char a) { return same(a, b); });
}

}  // namespace

ZBrowserLaunch::ZBrowserLaunch(std::string_view address)
    : mAddress(address)
    , mThread("launch browser thread", &ZBrowserLaunch::OpenAddress, this)
{
    mThread.Resume();
}

bool ZBrowserLaunch::IsWebAddress(std::string_view address)
{
    const auto printable = [](unsigned char byte) { return byte > ' ' && byte != 0x7f; };
    return (beginsWith(address, "http://") || beginsWith(address, "https://")) &&
           std::all_of(address.begin(), address.end(), printable);
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZClipboard.h"

#include <utility>

namespace orvane
{

namespace
{

ZClipboard* current = nullptr;

}  // namespace

ZClipboard* ZClipboard::Get()
{
    return current;
}

ZClipboard* ZClipboard::Set(ZClipboard* clipboard)
{
    return std::exchange(current, clipboard);
}

}  // namespace orvane

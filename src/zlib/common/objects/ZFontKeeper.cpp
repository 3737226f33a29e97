// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZFontKeeper.h"

namespace orvane
{

namespace
{

constinit ZFontKeeper::Maker currentMaker = nullptr;

}  // namespace

void ZFontKeeper::SetMaker(Maker maker)
{
    currentMaker = maker;
}

std::unique_ptr<ZFontKeeper> ZFontKeeper::Make()
{
    return currentMaker ? currentMaker() : nullptr;
}

}  // namespace orvane

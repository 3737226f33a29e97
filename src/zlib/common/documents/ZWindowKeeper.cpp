// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZWindowKeeper.h"

#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

// Initialised before any constructor runs: the row of the windows sets it at library load.
constinit ZWindowKeeper::Maker currentMaker = nullptr;

}  // namespace

ZWindowKeeper::Maker ZWindowKeeper::SetMaker(Maker maker)
{
    return std::exchange(currentMaker, maker);
}

std::unique_ptr<ZWindowKeeper> ZWindowKeeper::Make(const boost::shared_ptr<ZXMLElement>& xml,
                                                   ZApp* app)
{
    assert(xml && app);
    return currentMaker ? currentMaker(xml, app) : nullptr;
}

}  // namespace orvane

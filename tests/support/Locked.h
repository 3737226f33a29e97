// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZInterfaceLock.h"

namespace orvane
{

/// Does something under the interface lock, and returns what it returns.
template <typename Action>
decltype(auto) locked(const Action& action)
{
    const ZInterfaceLock lock;
    return action();
}

}  // namespace orvane

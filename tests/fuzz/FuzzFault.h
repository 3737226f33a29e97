// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

#include <cstdio>

namespace orvane
{

/// Ends the fuzz run with a message, unless fault is empty.
inline void requireNoFault(const std::string& fault)
{
    if (fault.empty())
        return;
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}

}  // namespace orvane

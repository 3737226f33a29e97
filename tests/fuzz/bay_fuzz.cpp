// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the description of a signal network.

#include "FuzzFault.h"
#include "support/BayArchiveCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const orvane::ZInterfaceLock lock;
    // Never deleted: at the program's end nobody holds the lock.
    static auto& check = *new orvane::BayArchiveCheck;
    orvane::requireNoFault(check.FaultAfter({reinterpret_cast<const char*>(data), size}));
    return 0;
}

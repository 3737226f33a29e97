// SPDX-License-Identifier: GPL-3.0-or-later
// Loads arbitrary bytes as a host's chunk. An odd first byte makes it a program chunk, an even one
// a bank.

#include "FuzzFault.h"
#include "pluginwrappers/common/ChunkCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    static orvane::ChunkCheck check;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    orvane::requireNoFault(check.FaultAfter(bytes, data[0] % 2 != 0));
    return 0;
}

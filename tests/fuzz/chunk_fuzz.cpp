// SPDX-License-Identifier: GPL-3.0-or-later
// Loads arbitrary bytes as a host's chunk. An odd first byte makes it a program chunk, an even one a
// bank.

#include "pluginwrappers/common/ChunkCheck.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    static orvane::ChunkCheck check;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string fault = check.FaultAfter(bytes, data[0] % 2 != 0);
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}

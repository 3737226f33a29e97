// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the description of a signal network.

#include "support/BayArchiveCheck.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static orvane::BayArchiveCheck check;
    const std::string fault = check.FaultAfter({reinterpret_cast<const char*>(data), size});
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the archive of an element.

#include "support/ElementArchiveCheck.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string fault =
        orvane::elementArchiveFault({reinterpret_cast<const char*>(data), size});
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}

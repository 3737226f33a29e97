// SPDX-License-Identifier: GPL-3.0-or-later
// Loads arbitrary bytes as the state of a CLAP instance. The first byte says how many of them the
// host's stream gives at a time, 0 for all.

#include "ClapFuzzInstance.h"
#include "FuzzFault.h"
#include "support/StateCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    static orvane::ClapFuzzInstance instance;
    static orvane::StateCheck check(instance);
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t most = data[0] != 0 ? data[0] : SIZE_MAX;
    orvane::requireNoFault(check.FaultAfter([&] { return instance.Load(text, most); }));
    return 0;
}

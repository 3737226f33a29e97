// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the archive of an element.

#include "FuzzFault.h"
#include "support/ElementArchiveCheck.h"
#include "zlib/common/objects/ZInterfaceLock.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const orvane::ZInterfaceLock lock;
    orvane::requireNoFault(
        orvane::elementArchiveFault({reinterpret_cast<const char*>(data), size}));
    return 0;
}

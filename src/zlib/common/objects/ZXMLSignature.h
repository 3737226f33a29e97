// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// True when the text's first `<signature data="...">` holds 512 hexadecimal digits that verify,
/// by RSA with SHA-1 under the public key of this build, everything up to and including that `<`,
/// line ends left out. What stands behind the `<signature` is not covered. False for a text
/// without a signature, or with a damaged one. [setup]
[[nodiscard]] bool VerifySignature(const char* text, std::int32_t length);

}  // namespace orvane

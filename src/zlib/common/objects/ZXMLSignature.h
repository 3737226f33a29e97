// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Verifies the signature of a description: the 512 hexadecimal digits of its first
/// `<signature data="...">` must be the signature, by RSA with SHA-1 under this build's public key,
/// of all characters up to and including that `<`, without line ends. The text behind `<signature`
/// is not covered. Returns false for a text without a signature or with a damaged one. [setup]
[[nodiscard]] bool VerifySignature(const char* text, std::int32_t length);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// The public key that descriptions are checked by: a PEM block of the type "RSA PUBLIC KEY".
/// The public half of the key that the build signs with.
extern const char* const kSigningPublicKey;

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// The public key that verifies descriptions: a PEM block of the type "RSA PUBLIC KEY". It is the
/// public half of the key with which the build signs them.
extern const char* const kSigningPublicKey;

}  // namespace orvane

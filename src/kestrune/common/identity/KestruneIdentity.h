// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace orvane
{

// The product's names and version: a build of another product changes these functions only. The
// texts are terminated and live as long as the library. [any thread]

/// Names the application object and titles the product's message boxes.
[[nodiscard]] const char* productName();
/// Major, minor and third number.
[[nodiscard]] std::array<std::int32_t, 3> productVersion();
/// The identifier under which the user's settings are kept, until the description gives its own.
[[nodiscard]] const char* applicationIdentifier();
/// The name of the resource that holds the application description.
[[nodiscard]] const char* descriptionResourceName();

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

// What tells this product from another one of the same make: a build for another product differs
// in these functions only. Terminated texts that live as long as the library. [any thread]

/// Name of the application object.
[[nodiscard]] const char* productName();
[[nodiscard]] const char* productVersion();
/// Under which the user's settings are kept, unless the description names another.
[[nodiscard]] const char* applicationIdentifier();
[[nodiscard]] const char* pluginName();
/// Resource that holds the application description.
[[nodiscard]] const char* descriptionResourceName();

}  // namespace orvane

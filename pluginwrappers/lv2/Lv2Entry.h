// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

namespace orvane
{

/// Returns the description of the plug-in and of its window, which live as long as the library.
/// Their functions let no exception out: a failure is a line on standard error, and what fails to
/// be made is null. [any thread]
[[nodiscard]] const LV2_Descriptor& lv2Descriptor();
[[nodiscard]] const LV2UI_Descriptor& lv2UiDescriptor();

}  // namespace orvane

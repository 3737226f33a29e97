// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the functions that the LV2 library exports.

#include "pluginwrappers/lv2/Lv2Entry.h"

#include <cstdint>

const LV2_Descriptor* lv2_descriptor(std::uint32_t index)
{
    return index == 0 ? &orvane::lv2Descriptor() : nullptr;
}

const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index)
{
    return index == 0 ? &orvane::lv2UiDescriptor() : nullptr;
}

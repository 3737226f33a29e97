// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Bit of VstParameterProperties::flags.
constexpr std::int32_t kVstParameterIsSwitch = 1 << 0;

/// Properties by which a host can choose a control for a parameter. Texts are terminated.
struct VstParameterProperties
{
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[64];
    std::int32_t flags;
    std::int32_t minInteger;
    std::int32_t maxInteger;
    std::int32_t stepInteger;
    std::int32_t largeStepInteger;
    char shortLabel[8];
    std::int16_t displayIndex;  // from 1
    std::int16_t category;      // 0: none
    std::int16_t numParametersInCategory;
    std::int16_t reserved;
    char categoryLabel[24];
    char future[16];
};

}  // namespace orvane

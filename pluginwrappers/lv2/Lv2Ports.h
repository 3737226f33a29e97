// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// The plug-in's name in LV2, under which hosts keep it in projects: it never changes.
inline constexpr const char* kLv2Uri = "urn:orvane:cantorel-mini";
inline constexpr const char* kLv2UiUri = "urn:orvane:cantorel-mini#ui";
/// The property of a saved state that holds the program as text.
inline constexpr const char* kLv2ProgramUri = "urn:orvane:cantorel-mini#program";

/// The indices of the ports; those of plainParametersOf follow, each a control port. Hosts may
/// store them: append only.
enum Lv2Port : std::uint32_t
{
    kLv2AudioIn,  // two
    kLv2AudioOut = kLv2AudioIn + 2,
    kLv2MidiIn = kLv2AudioOut + 2,
    kLv2Notify,
    kLv2Latency,
    kLv2FreeWheel,
    kLv2FirstParameter,
};

}  // namespace orvane

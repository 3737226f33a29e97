// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include <cstdint>
#include <optional>

namespace orvane
{

/// Returns the data of a host's feature; null when the host lacks it. features may be null and is
/// otherwise ended by null. [any thread]
[[nodiscard]] void* findFeature(const LV2_Feature* const* features, const char* uri) noexcept;

/// As findFeature, and says on standard error that the host lacks it.
[[nodiscard]] void* requireFeature(const LV2_Feature* const* features, const char* uri) noexcept;

/// The numbers of the names that the shell uses, given by the host.
struct Lv2Urids
{
    explicit Lv2Urids(const LV2_URID_Map& map);

    LV2_URID atomFloat;
    LV2_URID atomInt;
    LV2_URID atomSequence;
    LV2_URID atomObject;
    LV2_URID atomString;
    LV2_URID midiEvent;
    LV2_URID maxBlockLength;
    LV2_URID program;
    LV2_URID sampleRate;
    LV2_URID scaleFactor;
    LV2_URID stateChanged;
};

/// Returns the value of an option of the host, of type atom:Int or atom:Float; none when the array,
/// which may be null, does not hold it. [any thread]
[[nodiscard]] std::optional<double> findOption(const LV2_Options_Option* options, LV2_URID key,
                                               const Lv2Urids& urids) noexcept;

}  // namespace orvane

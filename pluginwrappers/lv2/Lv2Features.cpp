// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/lv2/Lv2Features.h"

#include "kestrune/common/identity/KestruneIdentity.h"
#include "pluginwrappers/lv2/Lv2Ports.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/midi/midi.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>

#include <cstdio>
#include <cstring>

namespace orvane
{

void* findFeature(const LV2_Feature* const* features, const char* uri) noexcept
{
    for (; features != nullptr && *features != nullptr; ++features)
        if (std::strcmp((*features)->URI, uri) == 0)
            return (*features)->data;
    return nullptr;
}

void* requireFeature(const LV2_Feature* const* features, const char* uri) noexcept
{
    void* const data = findFeature(features, uri);
    if (data == nullptr)
        std::fprintf(stderr, "%s: the host lacks the required feature %s\n", productName(), uri);
    return data;
}

Lv2Urids::Lv2Urids(const LV2_URID_Map& map)
{
    const auto number = [&map](const char* uri) { return map.map(map.handle, uri); };
    atomFloat = number(LV2_ATOM__Float);
    atomInt = number(LV2_ATOM__Int);
    atomSequence = number(LV2_ATOM__Sequence);
    atomObject = number(LV2_ATOM__Object);
    atomString = number(LV2_ATOM__String);
    midiEvent = number(LV2_MIDI__MidiEvent);
    maxBlockLength = number(LV2_BUF_SIZE__maxBlockLength);
    program = number(kLv2ProgramUri);
    sampleRate = number(LV2_PARAMETERS__sampleRate);
    scaleFactor = number(LV2_UI__scaleFactor);
    stateChanged = number(LV2_STATE__StateChanged);
}

std::optional<double> findOption(const LV2_Options_Option* options, LV2_URID key,
                                 const Lv2Urids& urids) noexcept
{
    for (; options != nullptr && (options->key != 0 || options->value != nullptr); ++options) {
        if (options->key != key || options->value == nullptr)
            continue;
        if (options->type == urids.atomInt && options->size == sizeof(std::int32_t))
            return *static_cast<const std::int32_t*>(options->value);
        if (options->type == urids.atomFloat && options->size == sizeof(float))
            return static_cast<double>(*static_cast<const float*>(options->value));
    }
    return std::nullopt;
}

}  // namespace orvane

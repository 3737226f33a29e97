// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/core/ZMidiMessage.h"
#include "pluginwrappers/interface/VstEvents.h"

#include <optional>

namespace orvane
{

/// Returns the bytes of a MIDI event of the host; none for an event of another type. event is not
/// null, but may be at an odd address. [any thread, audio thread included]
[[nodiscard]] std::optional<MidiBytes> midiBytesOf(const VstEvent* event) noexcept;

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <cstdint>

namespace orvane
{

class ZMessage;

/// The bytes of a MIDI channel message; what the message does not have is 0.
using MidiBytes = std::array<std::uint8_t, 3>;

/// Returns the message for a MIDI channel message, with the fields "Channel", "Which" and "Amount"
/// (unsigned 8-bit) and "BigAmount" (unsigned 16-bit); null for any other message. Allocates.
/// [any thread]
[[nodiscard]] boost::shared_ptr<const ZMessage> midiMessageOf(const MidiBytes& midi);

}  // namespace orvane

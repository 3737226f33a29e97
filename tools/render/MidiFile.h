// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace orvane
{

/// A message of a channel: a note, a controller, the bend wheel and the like.
struct MidiEvent
{
    double seconds;                     // from the start of the file, at its own tempo
    std::array<std::uint8_t, 3> bytes;  // status first; 0 where the message is shorter
};

/// The messages of all channels of a Standard MIDI File, in order of time. Those that belong to one
/// moment stay in the order of their tracks. Formats 0 and 1, in beats or in the frames of a film;
/// what is no message of a channel is passed over, but changes of tempo, which are obeyed. name is
/// what errors call the file. Throws ZException where the file is none of these, or broken.
[[nodiscard]] std::vector<MidiEvent> midiEventsIn(std::span<const std::uint8_t> file,
                                                  const std::string& name);
/// The same of a file on disk. Throws ZException also where it cannot be read or is too long.
[[nodiscard]] std::vector<MidiEvent> readMidiFile(const std::filesystem::path& path);

}  // namespace orvane

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

/// A MIDI channel message: note, controller, pitch bend and so on.
struct MidiEvent
{
    double seconds;                     // from the start of the file, by the file's own tempo
    std::array<std::uint8_t, 3> bytes;  // status byte first; unused bytes are 0
};

/// Parses a Standard MIDI File of format 0 or 1, with either metrical or SMPTE time, and returns
/// its channel messages sorted by time; messages at the same time keep the order of their tracks.
/// Tempo changes are applied; other meta events and system exclusive messages are skipped. Errors
/// name the file by name. Throws ZException for other formats and for damaged files.
[[nodiscard]] std::vector<MidiEvent> parseMidiFile(std::span<const std::uint8_t> file,
                                                   const std::string& name);
/// Reads a file and parses it as parseMidiFile does. Throws ZException also when the file cannot be
/// read or is too long.
[[nodiscard]] std::vector<MidiEvent> readMidiFile(const std::filesystem::path& path);

}  // namespace orvane

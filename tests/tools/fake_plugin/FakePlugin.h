#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

/// What the fake plug-in has seen of its host since its entry was called last. The library gives it
/// out through the function "fakePluginLog".
struct FakePluginLog
{
    std::vector<std::int32_t> opcodes;  // asked of the dispatcher, without those for texts
    std::vector<std::int32_t> blocks;   // frames of each
    std::vector<double> positions;      // of each, in frames, as the host tells
    std::vector<double> quarters;
    std::vector<std::string> events;  // "FRAME: ..." for each value and message, where it came
    std::vector<std::string> chunks;  // that came, "bank " or "program " before them
    /// The host's version, rate, block size, process level, language, whether it sends MIDI, its
    /// vendor and name, as it answers in the first block.
    std::string host;
};

/// Latency in frames, and the one to which it changes where the environment asks for that.
inline constexpr int kFakeLatency = 150;
inline constexpr int kFakeLaterLatency = 230;

/// Its only chunk: with an element that no parameter reaches.
inline constexpr const char* kFakeChunk =
    "<VST_Program><element name=\"detune\" floatvalue=\"12.5\"></element></VST_Program>";

/// How the fake behaves: the environment variable of this name holds "" or one of
///   refuse     the entry gives null
///   nomagic    the entry gives something else than an effect
///   mono       one channel in and out
///   adds       it cannot replace
///   early      the latency changes in the first block
///   late       the latency changes in the tenth block
///   chunkless  it stores no chunks
///   picky      it refuses chunks
///   automates  it changes a parameter of itself in each block
inline constexpr const char* kFakeMode = "KESTRUNE_FAKE_PLUGIN";

}  // namespace orvane

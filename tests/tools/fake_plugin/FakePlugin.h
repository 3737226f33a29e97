// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace orvane
{

/// What the fake plug-in has seen of its host since its entry was called last, in order: the
/// host's answers before the first block, opcodes by number but for those that ask for texts,
/// parameters, messages, chunks, and each block with its time. The library gives it out through the
/// function "fakePluginLog".
using FakePluginLog = std::vector<std::string>;

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

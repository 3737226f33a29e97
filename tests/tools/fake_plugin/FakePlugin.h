// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

namespace orvane
{

/// The calls of the host since the last call of the entry function, and the host's answers before
/// the first block. The library exports it as the function "fakePluginLog".
using FakePluginLog = std::vector<std::string>;

/// Latency in frames at the start and after the change that some modes make.
inline constexpr int kFakeLatency = 150;
inline constexpr int kFakeLaterLatency = 230;

/// The chunk that it gives: one element, which is not a parameter.
inline constexpr const char* kFakeChunk =
    "<VST_Program><element name=\"detune\" floatvalue=\"12.5\"></element></VST_Program>";

/// Name of the environment variable that holds the mode: "" or one of
///   refuse     the entry function returns null
///   nomagic    the effect has no magic number
///   mono       one channel in, two out
///   adds       no processReplacing
///   early      the latency changes in the first block
///   late       the latency changes in the tenth block
///   crash      the first block ends the process
///   chunkless  no chunks
///   picky      every chunk is refused
inline constexpr const char* kFakeMode = "KESTRUNE_FAKE_PLUGIN";

}  // namespace orvane

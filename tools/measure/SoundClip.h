// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace orvane
{

/// One channel of sound, full scale at 1.0.
struct SoundClip
{
    int sampleRate;  // Hz
    std::vector<float> samples;
};

/// Reads the first channel of a sound file. Throws std::runtime_error that names the file.
SoundClip readSoundClip(const std::filesystem::path& path);

/// Writes 16 bit, rounded to nearest: FLAC if the name ends in ".flac", else WAV. Throws
/// std::runtime_error that names the file.
void writeSoundClip(const std::filesystem::path& path, const SoundClip& clip);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace orvane
{

/// One channel of sound at full scale 1.0.
struct SoundClip
{
    int sampleRate;  ///< Hz
    std::vector<float> samples;
};

/// The first channel of a sound file. Throws std::runtime_error that names the file.
SoundClip readSoundClip(const std::filesystem::path& path);

/// Writes 16 bit, rounded to the nearest: FLAC for a name that ends so, else WAV. Throws
/// std::runtime_error that names the file.
void writeSoundClip(const std::filesystem::path& path, const SoundClip& clip);

}  // namespace orvane

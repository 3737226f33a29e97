// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/measure/SoundClip.h"

#include <sndfile.hh>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace orvane
{

namespace
{

constexpr float kFullScale = 32768.0f;

std::int16_t toSixteenBit(float sample)
{
    const float scaled = std::round(sample * kFullScale);
    return static_cast<std::int16_t>(std::clamp(scaled, -kFullScale, kFullScale - 1.0f));
}

}  // namespace

SoundClip readSoundClip(const std::filesystem::path& path)
{
    SndfileHandle file(path.string());
    if (file.error() != SF_ERR_NO_ERROR)
        throw std::runtime_error("cannot read " + path.string() + ": " + file.strError());
    const auto channels = static_cast<std::size_t>(file.channels());
    std::vector<float> all(static_cast<std::size_t>(file.frames()) * channels);
    const auto frames = static_cast<std::size_t>(file.readf(all.data(), file.frames()));
    SoundClip clip{file.samplerate(), std::vector<float>(frames)};
    for (std::size_t i = 0; i < frames; ++i)
        clip.samples[i] = all[i * channels];
    return clip;
}

void writeSoundClip(const std::filesystem::path& path, const SoundClip& clip)
{
    const int container = path.extension() == ".flac" ? SF_FORMAT_FLAC : SF_FORMAT_WAV;
    SndfileHandle file(path.string(), SFM_WRITE, container | SF_FORMAT_PCM_16, 1, clip.sampleRate);
    if (file.error() != SF_ERR_NO_ERROR)
        throw std::runtime_error("cannot write " + path.string() + ": " + file.strError());
    // The strongest compression: the clip is kept under version control.
    double level = 1.0;
    file.command(SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
    std::vector<std::int16_t> words(clip.samples.size());
    std::transform(clip.samples.begin(), clip.samples.end(), words.begin(), toSixteenBit);
    const auto count = static_cast<sf_count_t>(words.size());
    if (file.write(words.data(), count) != count)
        throw std::runtime_error("cannot write " + path.string() + ": " + file.strError());
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/Singer.h"

#include "tools/singer/GlottalSource.h"
#include "tools/singer/Performance.h"
#include "tools/singer/SeededNoise.h"
#include "tools/singer/VocalTract.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

constexpr double kPi = std::numbers::pi;
constexpr double kVowelPeak = 0.5;
constexpr double kSongPeak = 0.65;
constexpr double kVowelEffort = 0.7;
constexpr double kFadeInSeconds = 0.02;
constexpr double kLowestSongHz = 100.0;
constexpr double kBreathiness = 0.01;   // share of noise in the voice
constexpr double kNoiseRate = 44100.0;  // Hz, for which the noise levels are set

void scaleToPeak(std::vector<float>& samples, double peak)
{
    float largest = 0.0f;
    for (const float sample : samples)
        largest = std::max(largest, std::fabs(sample));
    if (largest <= 0.0f)
        return;
    const float gain = static_cast<float>(peak) / largest;
    for (float& sample : samples)
        sample *= gain;
}

/// Shapes noise as the teeth do: high and wide, not filtered by the vocal tract.
class HissFilter
{
public:
    explicit HissFilter(double sampleRate)
    {
        mLow.set(std::min(5200.0, 0.3 * sampleRate), 1200.0, sampleRate);
        mHigh.set(std::min(7400.0, 0.4 * sampleRate), 1600.0, sampleRate);
    }

    double next(double noise)
    {
        const double difference = noise - mBefore;  // removes low frequencies
        mBefore = noise;
        return mHigh.next(mLow.next(difference));
    }

private:
    Resonator mLow;
    Resonator mHigh;
    double mBefore = 0.0;
};

/// Source and tract. The controls are set for each sample, since formants that move in steps would
/// buzz.
class Voice
{
public:
    explicit Voice(double sampleRate)
        : mSource(sampleRate, kLowestSongHz)
        , mTract(sampleRate)
        , mHiss(sampleRate)
        , mNoiseGain(std::sqrt(sampleRate / kNoiseRate))
    {
    }

    double next(const Performance::Moment& moment)
    {
        mSource.set(moment.pitchHz, moment.effort);
        mTract.set(moment.formants, moment.pitchHz);
        const double noise = mNoiseGain * mNoise.next();
        // The noise is loudest while the glottis is open, half a period from the closure at phase
        // 0.
        const double open = 0.5 - 0.5 * std::cos(2.0 * kPi * mSource.phase());
        const double air = (moment.aspiration + kBreathiness * moment.voicing * open) * noise;
        const double glottis = moment.voicing * mSource.next() + air;
        return mTract.next(glottis) + mHiss.next(moment.hiss * noise);
    }

private:
    GlottalSource mSource;
    VocalTract mTract;
    HissFilter mHiss;
    SeededNoise mNoise{3};
    double mNoiseGain;
};

}  // namespace

std::vector<float> steadyVowel(Vowel vowel, double pitchHz, double sampleRate, double seconds)
{
    assert(pitchHz > 0.0 && sampleRate > 0.0 && seconds >= 0.0);
    GlottalSource source(sampleRate, pitchHz);
    VocalTract tract(sampleRate);
    source.set(pitchHz, kVowelEffort);
    tract.set(formantsOf(vowel), pitchHz);
    std::vector<float> out(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < out.size(); ++i) {
        const double time = static_cast<double>(i) / sampleRate;
        const double fade = std::min(1.0, time / kFadeInSeconds);
        out[i] = static_cast<float>(tract.next(fade * source.next()));
    }
    scaleToPeak(out, kVowelPeak);
    return out;
}

std::vector<float> renderSong(const Song& song, double sampleRate)
{
    assert(sampleRate > 0.0 && !song.notes.empty());
    const Performance performance(song);
    Voice voice(sampleRate);
    std::vector<float> out(static_cast<std::size_t>(song.seconds * sampleRate));
    for (std::size_t i = 0; i < out.size(); ++i) {
        const double seconds = static_cast<double>(i) / sampleRate;
        out[i] = static_cast<float>(voice.next(performance.at(seconds)));
    }
    scaleToPeak(out, kSongPeak);
    return out;
}

}  // namespace orvane

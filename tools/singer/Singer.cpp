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
constexpr double kControlSeconds = 0.0005;  // pitch and formants move in steps of this
constexpr double kLowestSongHz = 100.0;
constexpr double kBreathiness = 0.004;  // noise that goes with the voice
constexpr double kNoiseRate = 44100.0;  // at which the noise levels are meant

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

/// Noise of the teeth: high and wide, not coloured by the tract behind it.
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
        const double difference = noise - mBefore;  // takes the low end away
        mBefore = noise;
        return mHigh.next(mLow.next(difference));
    }

private:
    Resonator mLow;
    Resonator mHigh;
    double mBefore = 0.0;
};

/// The sound of a moment after the other.
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

    /// Appends count samples in which the amplitudes go straight from one moment to the next.
    void sing(const Performance::Moment& from, const Performance::Moment& to, int count,
              std::vector<float>& out)
    {
        mSource.set(from.pitchHz, from.effort);
        mTract.set(from.formants, from.pitchHz);
        for (int i = 0; i < count; ++i) {
            const double place = static_cast<double>(i) / count;
            const double voicing = std::lerp(from.voicing, to.voicing, place);
            const double aspiration = std::lerp(from.aspiration, to.aspiration, place);
            const double hiss = std::lerp(from.hiss, to.hiss, place);
            const double noise = mNoiseGain * mNoise.next();
            // Air is noisy while the glottis is open, which is away from the closure at phase 0.
            const double open = 0.5 - 0.5 * std::cos(2.0 * kPi * mSource.phase());
            const double breath = (aspiration + kBreathiness * voicing * open) * noise;
            const double sample =
                mTract.next(voicing * mSource.next() + breath) + mHiss.next(hiss * noise);
            out.push_back(static_cast<float>(sample));
        }
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
    assert(sampleRate > 0.0);
    const Performance performance(song);
    Voice voice(sampleRate);
    const auto total = static_cast<std::size_t>(song.seconds * sampleRate);
    const int step = std::max(1, static_cast<int>(kControlSeconds * sampleRate));
    std::vector<float> out;
    out.reserve(total + static_cast<std::size_t>(step));
    while (out.size() < total) {
        const auto place = static_cast<double>(out.size());
        voice.sing(performance.at(place / sampleRate), performance.at((place + step) / sampleRate),
                   step, out);
    }
    out.resize(total);
    scaleToPeak(out, kSongPeak);
    return out;
}

}  // namespace orvane

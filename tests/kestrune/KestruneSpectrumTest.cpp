#include "kestrune/common/KestruneSpectrum.h"
#include "kestrune/common/KestruneGeometry.h"
#include "kestrune/common/KestruneStereoRing.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

constexpr int kFrameLength = 1208;
constexpr int kRingLength = 2000;
constexpr KestruneSpectrum::Band kBand{14, 367};

class KestruneSpectrumTest : public testing::Test
{
protected:
    KestruneSpectrumTest()
    {
        spectrum.Allocate(KestruneGeometry::For(44100.0f, 512));
        spectrum.SetFrameLength(kFrameLength);
    }

    /// Voicing by the shape of the spectrum alone.
    float voicingOf(const std::vector<float>& left, const std::vector<float>& right,
                    std::int16_t reference = 2)
    {
        KestruneStereoRing ring;
        ring.Allocate(kRingLength);
        const float* const inputs[] = {left.data(), right.data()};
        ring.Write(inputs, 1500, kFrameLength);  // across the end
        spectrum.LoadFrame(ring, 1500, reference);
        spectrum.Transform();
        return spectrum.NormalizeBand(kBand);
    }

    float voicingOf(const std::vector<float>& both) { return voicingOf(both, both); }

    KestruneSpectrum spectrum;
};

const std::vector<float> kSilence(kFrameLength, 0.0f);

}  // namespace

TEST_F(KestruneSpectrumTest, AVoiceStandsOutOfNoiseAndSilence)
{
    EXPECT_GT(voicingOf(harmonicTone(220.0, 44100.0, kFrameLength)), 0.8f);
    EXPECT_LT(voicingOf(whiteNoise(0.3f, kFrameLength, 5)), 0.3f);
    EXPECT_EQ(voicingOf(kSilence), 0.0f);
    EXPECT_EQ(spectrum.Values()[100], 0.0f) << "a flat band has no level of its own";
    EXPECT_EQ(spectrum.LevelGate(), 0.0f);
}

TEST_F(KestruneSpectrumTest, TheReferenceNamesTheChannelThatIsHeard)
{
    const auto tone = harmonicTone(220.0, 44100.0, kFrameLength);
    EXPECT_GT(voicingOf(tone, kSilence, 0), 0.8f);
    EXPECT_EQ(voicingOf(tone, kSilence, 1), 0.0f);
    EXPECT_GT(voicingOf(kSilence, tone, 1), 0.8f);
    EXPECT_GT(voicingOf(kSilence, tone, 7), 0.8f);
}

TEST_F(KestruneSpectrumTest, TheGateOpensOverTenDecibelsAndSixSoonerForTwoChannels)
{
    // The window's mean square is 0.3974, a sine's 0.5: an amplitude for each frame level.
    const auto gateAt = [this](double decibels, std::int16_t reference) {
        const double amplitude = std::sqrt(std::pow(10.0, decibels / 10.0) / (0.5 * 0.3974));
        const auto tone = sine(1000.0, amplitude, 44100.0, kFrameLength);
        voicingOf(tone, tone, reference);
        return spectrum.LevelGate();
    };
    EXPECT_EQ(gateAt(-61.0, 0), 0.0f);
    EXPECT_NEAR(gateAt(-55.0, 0), 0.5f, 0.02f);
    EXPECT_EQ(gateAt(-49.0, 0), 1.0f);
    EXPECT_NEAR(gateAt(-59.0, 2), gateAt(-52.98, 1), 0.01f);
}

}  // namespace orvane

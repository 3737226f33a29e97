#include "kestrune/common/KestruneHarmonicComb.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane
{

namespace
{

constexpr float kBinsPerHz = 8192.0f / 44100.0f;

struct RangeRow
{
    float minHz;
    float maxHz;
    int candidates;
    int mostHarmonics;
    int lowestBin;
    int highestBin;
};

constexpr RangeRow kRanges[] = {
    {73.0f, 1318.0f, 1002, 27, 14, 367}, {73.0f, 494.0f, 663, 10, 14, 138},
    {165.0f, 1318.0f, 720, 11, 31, 367}, {20.0f, 330.0f, 971, 24, 4, 92},
    {330.0f, 1500.0f, 525, 6, 61, 418},
};

KestruneHarmonicComb combOver(float minHz, float maxHz)
{
    KestruneHarmonicComb comb;
    comb.SetRange(minHz, maxHz, maxHz * 1.5f, kBinsPerHz);
    return comb;
}

/// A spectrum that is low everywhere but at the harmonics of a pitch.
std::vector<float> peaksAt(float pitchHz, float value)
{
    std::vector<float> spectrum(4097, -1.0f);
    for (float hz = pitchHz; hz < 1977.0f; hz += pitchHz)
        spectrum[static_cast<std::size_t>(hz * kBinsPerHz + 0.5f)] = value;
    return spectrum;
}

}  // namespace

TEST(KestruneHarmonicCombTest, TheGridCoversEachRangeWithinItsBand)
{
    for (const RangeRow& row : kRanges) {
        SCOPED_TRACE(row.minHz);
        const auto comb = combOver(row.minHz, row.maxHz);
        ASSERT_EQ(comb.CandidateCount(), row.candidates);
        EXPECT_EQ(comb.HarmonicCount(0), row.mostHarmonics);
        EXPECT_EQ(comb.HarmonicCount(row.candidates - 1), 1);
        for (int candidate = 0; candidate < row.candidates; ++candidate) {
            const int last = comb.HarmonicCount(candidate) - 1;
            EXPECT_GE(comb.HarmonicBin(candidate, 0), row.lowestBin);
            EXPECT_LE(comb.HarmonicBin(candidate, last), row.highestBin);
        }
    }
}

TEST(KestruneHarmonicCombTest, TheWidestRangeFillsTheComb)
{
    const auto comb = combOver(20.0f, 1500.0f);
    EXPECT_EQ(comb.CandidateCount(), KestruneHarmonicComb::kMaxCandidates);
    EXPECT_EQ(comb.HarmonicCount(0), KestruneHarmonicComb::kMaxHarmonics);
}

TEST(KestruneHarmonicCombTest, ValleysTellThePitchFromItsSubOctave)
{
    auto comb = combOver(73.0f, 1318.0f);
    EXPECT_NEAR(comb.Find(peaksAt(220.0f, 1.0f), 1.0f), 220.0f, 2.0f);
    EXPECT_NEAR(comb.Find(peaksAt(440.0f, 1.0f), 1.0f), 440.0f, 3.0f);
}

TEST(KestruneHarmonicCombTest, TheLowestOfEqualsWins)
{
    auto comb = combOver(73.0f, 1318.0f);
    const std::vector<float> flat(4097, 0.0f);
    EXPECT_EQ(comb.Find(flat, 1.0f), 73.0f);
}

TEST(KestruneHarmonicCombTest, WithoutVoiceTheLastPitchStaysAndWithHalfItFades)
{
    auto comb = combOver(73.0f, 1318.0f);
    const float sung = comb.Find(peaksAt(220.0f, 1.0f), 1.0f);
    EXPECT_EQ(comb.Find(peaksAt(500.0f, 1.0f), 0.0f), sung);
    EXPECT_EQ(comb.Find(peaksAt(500.0f, 1.0f), 0.2f), sung);
    EXPECT_NEAR(comb.Find(peaksAt(500.0f, 1.0f), 0.9f), 500.0f, 4.0f);
    comb.Clear();
    EXPECT_EQ(comb.Find(peaksAt(500.0f, 1.0f), 0.0f), 73.0f);
}

}  // namespace orvane

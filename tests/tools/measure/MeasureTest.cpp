// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Signals.h"
#include "support/Test.h"
#include "tools/measure/NoteAccuracy.h"
#include "tools/measure/SoundClip.h"
#include "tools/singer/Singer.h"

#include <filesystem>
#include <fstream>

using namespace orvane;

namespace
{

const std::filesystem::path kClipFolder = KESTRUNE_CLIP_FOLDER;
constexpr double kRate = 44100.0;

/// A sine whose pitch is at centreHz at 0.5 s and rises by octavesPerSecond.
std::vector<float> risingSine(double centreHz, double octavesPerSecond)
{
    std::vector<float> out(44100);
    double phase = 0.0;
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * phase));
        const double seconds = static_cast<double>(i) / kRate;
        phase += centreHz * std::exp2(octavesPerSecond * (seconds - 0.5)) / kRate;
    }
    return out;
}

void expectPitch(const PitchTracker& tracker, double seconds, double hz, double toleranceCents)
{
    const auto found = tracker.at(seconds);
    ASSERT_TRUE(found) << hz;
    EXPECT_NEAR(1200.0 * std::log2(*found / hz), 0.0, toleranceCents) << hz;
}

}  // namespace

TEST(ClipTest, TheCommittedClipEqualsARenderOfTheSong)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    EXPECT_EQ(clip.sampleRate, 44100);
    const auto song = renderSong(demoSong(), clip.sampleRate);
    ASSERT_EQ(clip.samples.size(), song.size());
    // One step of 16 bit: compilers differ in the last digits.
    for (std::size_t i = 0; i < song.size(); ++i)
        ASSERT_NEAR(clip.samples[i], song[i], 1.0 / 32768.0) << i;
}

TEST(ClipTest, EveryNoteIsOffKeyByTheListedCents)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    const PitchTracker tracker(clip.samples, clip.sampleRate);
    for (const ClipNote& note : readClipNotes(kClipFolder / "voice.json"))
        EXPECT_NEAR(quantile(centsFromIntended(tracker, note, 0.0), 0.5), note.sungCents, 4.0)
            << note.startSeconds << " s";
}

TEST(ClipTest, UnreadableFilesAreRefusedByName)
{
    const std::string file = testing::TempDir() + "notes.json";
    for (const char* text :
         {"", "[1, 2", "{}", R"({"notes": 3})", R"({"notes": [{}]})", R"({"notes": []})"})
    {
        std::ofstream(file) << text;
        EXPECT_THROW(
            try { readClipNotes(file); } catch (const std::runtime_error& error) {
                EXPECT_NE(std::string(error.what()).find(file), std::string::npos);
                throw;
            },
            std::runtime_error)
            << text;
    }
    EXPECT_THROW(readSoundClip(file), std::runtime_error);
    std::filesystem::remove(file);
    EXPECT_THROW(readClipNotes(file), std::runtime_error);
}

TEST(PitchTrackerTest, FindsThePitchOfSinesTonesAndGlidesAndNoneInSilenceNoiseAndAtTheEnds)
{
    for (const double hz : {140.0, 196.0, 311.1, 659.3, 950.0})
        expectPitch(PitchTracker(risingSine(hz, 0.0), kRate), 0.3, hz, 0.1);
    for (const double hz : {147.0, 735.0})
        expectPitch(PitchTracker(harmonicTone(hz, kRate, 44100), kRate), 0.3, hz, 0.1);
    expectPitch(PitchTracker(risingSine(300.0, 0.5), kRate), 0.5, 300.0, 1.0);
    EXPECT_FALSE(PitchTracker(std::vector<float>(44100, 0.0f), kRate).at(0.5));
    EXPECT_FALSE(PitchTracker(whiteNoise(0.5f, 44100, 7), kRate).at(0.5));
    const PitchTracker sine(risingSine(300.0, 0.0), kRate);
    for (const double seconds : {-1.0, 0.001, 0.999, 2.0})
        EXPECT_FALSE(sine.at(seconds)) << seconds;
}

TEST(PitchTrackerTest, AccuracyIsTheDistanceOfAToneFromItsNote)
{
    // Half a second late and 30 cents flat.
    std::vector<float> tone(22050, 0.0f);
    const auto vowel = steadyVowel(Vowel::kA, 440.0 * std::exp2(-30.0 / 1200.0), kRate, 1.0);
    tone.insert(tone.end(), vowel.begin(), vowel.end());
    const std::vector<ClipNote> notes{{0.0, 0.9, 440.0, -30.0}};
    const PitchTracker tracker(tone, kRate);
    const NoteAccuracy late = noteAccuracy(tracker, notes, 0.5);
    EXPECT_NEAR(late.medianCents, 30.0, 0.1);
    EXPECT_NEAR(late.percentile95Cents, 30.0, 0.1);
    EXPECT_EQ(late.pitchedShare, 1.0);
    EXPECT_LT(noteAccuracy(tracker, notes, 0.0).pitchedShare, 0.7);
}

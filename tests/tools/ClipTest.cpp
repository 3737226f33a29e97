#include "tools/measure/ClipNotes.h"
#include "tools/measure/NoteAccuracy.h"
#include "tools/measure/PitchTracker.h"
#include "tools/measure/SoundClip.h"
#include "tools/singer/Singer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace orvane
{

namespace
{

const std::filesystem::path kClipFolder = KESTRUNE_CLIP_FOLDER;

class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string& ending)
    {
        std::string folder = testing::TempDir() + "clipXXXXXX";
        if (!mkdtemp(folder.data()))
            throw std::runtime_error("no temporary folder");
        mFolder = folder;
        mPath = mFolder / ("file" + ending);
    }
    ~TemporaryFile() { std::filesystem::remove_all(mFolder); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return mPath; }

private:
    std::filesystem::path mFolder;
    std::filesystem::path mPath;
};

}  // namespace

TEST(ClipTest, CommittedClipIsWhatTheSingerSings)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    EXPECT_EQ(clip.sampleRate, 44100);
    EXPECT_LE(std::filesystem::file_size(kClipFolder / "voice.flac"), 600'000u);
    const auto song = renderSong(demoSong(), clip.sampleRate);
    ASSERT_EQ(clip.samples.size(), song.size());
    // One step of 16 bit, since compilers differ in their last digits.
    for (std::size_t i = 0; i < song.size(); ++i)
        ASSERT_NEAR(clip.samples[i], song[i], 1.0 / 32768.0) << i;
}

TEST(ClipTest, CommittedNotesAreThoseOfTheSong)
{
    const auto expected = clipNotes(demoSong());
    const auto notes = readClipNotes(kClipFolder / "voice.json");
    ASSERT_EQ(notes.size(), expected.size());
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_NEAR(notes[i].startSeconds, expected[i].startSeconds, 1e-6);
        EXPECT_NEAR(notes[i].endSeconds, expected[i].endSeconds, 1e-6);
        EXPECT_NEAR(notes[i].intendedHz, expected[i].intendedHz, 1e-6);
        EXPECT_NEAR(notes[i].sungCents, expected[i].sungCents, 1e-6);
    }
}

TEST(ClipTest, EveryNoteIsOffByWhatTheNotesSay)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    const PitchTracker tracker(clip.samples, clip.sampleRate);
    for (const ClipNote& note : readClipNotes(kClipFolder / "voice.json"))
        EXPECT_NEAR(quantile(centsFromIntended(tracker, note, 0.0), 0.5), note.sungCents, 4.0)
            << note.startSeconds << " s";
}

TEST(ClipTest, PitchAndTimingDoNotDependOnTheSampleRate)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    const PitchTracker low(clip.samples, clip.sampleRate);
    const PitchTracker high(renderSong(demoSong(), 48000.0), 48000.0);
    for (const SungNote& note : demoSong().notes) {
        for (const double share : {0.2, 0.5, 0.8}) {
            const double seconds = note.onsetSeconds + share * note.seconds;
            const auto a = low.at(seconds);
            const auto b = high.at(seconds);
            ASSERT_TRUE(a && b) << seconds;
            EXPECT_NEAR(1200.0 * std::log2(*a / *b), 0.0, 1.5) << seconds;
        }
    }
}

TEST(ClipTest, SoundIsWrittenInSixteenBitAndHeldAtFullScale)
{
    for (const char* ending : {".flac", ".wav"}) {
        const TemporaryFile file(ending);
        writeSoundClip(file.path(), {48000, {0.0f, 0.25f, -1.0f, 1.5f, 3.0f / 65536.0f}});
        const SoundClip clip = readSoundClip(file.path());
        EXPECT_EQ(clip.sampleRate, 48000);
        const std::vector<float> expected{0.0f, 0.25f, -1.0f, 32767.0f / 32768.0f, 2.0f / 32768.0f};
        EXPECT_EQ(clip.samples, expected) << ending;
    }
}

TEST(ClipTest, WhatCannotBeReadIsToldByName)
{
    const TemporaryFile file(".json");
    EXPECT_THROW(readClipNotes(file.path()), std::runtime_error);
    EXPECT_THROW(readSoundClip(file.path()), std::runtime_error);
    for (const char* text :
         {"", "[1, 2", "{}", R"({"notes": 3})", R"({"notes": [{}]})", R"({"notes": []})"})
    {
        std::ofstream(file.path()) << text;
        try {
            readClipNotes(file.path());
            ADD_FAILURE() << "taken: " << text;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(file.path().string()), std::string::npos);
        }
    }
    EXPECT_THROW(readSoundClip(file.path()), std::runtime_error);
}

}  // namespace orvane

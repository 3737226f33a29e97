// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/measure/ClipNotes.h"
#include "tools/measure/NoteAccuracy.h"
#include "tools/measure/PitchTracker.h"
#include "tools/measure/SoundClip.h"
#include "tools/singer/Singer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace orvane
{

namespace
{

const std::filesystem::path kClipFolder = KESTRUNE_CLIP_FOLDER;

}  // namespace

TEST(ClipTest, TheCommittedClipEqualsARenderOfTheSong)
{
    const SoundClip clip = readSoundClip(kClipFolder / "voice.flac");
    EXPECT_EQ(clip.sampleRate, 44100);
    EXPECT_LE(std::filesystem::file_size(kClipFolder / "voice.flac"), 600'000u);
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
        try {
            readClipNotes(file);
            ADD_FAILURE() << "taken: " << text;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(file), std::string::npos);
        }
    }
    EXPECT_THROW(readSoundClip(file), std::runtime_error);
    std::filesystem::remove(file);
    EXPECT_THROW(readClipNotes(file), std::runtime_error);
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/PrivateFolder.h"

#include <sndfile.h>

#include <filesystem>

namespace orvane
{

/// The contents of a sound file, channels interleaved.
struct TestSound
{
    int rate = 44100;
    int channels = 1;
    int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    std::vector<float> samples;

    friend bool operator==(const TestSound&, const TestSound&) = default;

    [[nodiscard]] std::size_t Frames() const { return samples.size() / std::size_t(channels); }
};

void writeSound(const std::filesystem::path& path, const TestSound& sound);
[[nodiscard]] TestSound readSound(const std::filesystem::path& path);

/// A vowel 30 cents above A3 on the left; with two channels, softly an octave higher on the right.
[[nodiscard]] TestSound testVoice(int channels, double seconds, int rate = 44100);

/// Sorted names of the entries of a folder.
[[nodiscard]] std::vector<std::string> namesIn(const PrivateFolder& folder);

/// How a run of the program ended.
struct ProgramRun
{
    int status = -1;  // exit status; -1 when a signal ended it
    int signal = 0;
    std::string out;
    std::string err;
};

/// A running program whose output streams go to files.
struct RenderProgram
{
    /// input is the file that standard input reads.
    explicit RenderProgram(const std::vector<std::string>& arguments,
                           const std::string& program = KESTRUNE_RENDER_PROGRAM,
                           const std::string& input = "/dev/null");
    [[nodiscard]] int Process() const { return mProcess; }
    /// Waits for its end.
    [[nodiscard]] ProgramRun Finish();

private:
    PrivateFolder mStreams;
    int mProcess = 0;
};

[[nodiscard]] inline ProgramRun runRender(const std::vector<std::string>& arguments)
{
    return RenderProgram(arguments).Finish();
}

/// The pixels of a picture as 0xAARRGGBB, and the number of pixels in a row.
struct Picture
{
    std::vector<std::uint32_t> pixels;
    std::size_t width = 0;
};

/// Reads a PNG; a failure is one of the test.
[[nodiscard]] Picture readPicture(const std::string& path);

}  // namespace orvane

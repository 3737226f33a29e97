// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sndfile.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

/// Closes a sound file.
struct SoundFileCloser
{
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFileHandle = std::unique_ptr<SNDFILE, SoundFileCloser>;

/// The format of a sound file.
struct SoundFormat
{
    int rate = 0;      // Hz
    int channels = 0;  // 1 or 2
    int code = 0;      // libsndfile's container and encoding bits

    /// Such as "WAV, 24 bit PCM, stereo".
    [[nodiscard]] std::string Describe() const;
};

/// Two channels of equally many samples, full scale at 1.0.
using StereoBlock = std::array<std::vector<float>, 2>;

/// Reads a mono or stereo file as two channels; a mono file fills both with the same samples.
class SoundReader
{
public:
    /// path "-" stands for standard input. Throws ZException when the file cannot be read or has
    /// more than two channels.
    explicit SoundReader(const std::filesystem::path& path);

    [[nodiscard]] const SoundFormat& Format() const { return mFormat; }
    /// Number of samples read so far that were not finite and were replaced by 0.
    [[nodiscard]] std::int64_t BadSamples() const { return mBadSamples; }

    /// Fills block from its start, clears the rest and returns the number of frames read, which is
    /// less than the block only at the end. Throws ZException when the file is damaged.
    int Read(StereoBlock& block);

    /// A tag such as title or artist, by libsndfile's SF_STR_ constants; null without that tag.
    [[nodiscard]] const char* Text(int kind) const { return sf_get_string(mFile.get(), kind); }

private:
    void Open(const std::filesystem::path& path, SF_INFO& info);

    std::string mName;
    SoundFormat mFormat;
    std::int64_t mBadSamples = 0;
    std::vector<float> mInterleaved;
    SoundFileHandle mFile;
};

/// Writes two channels to a file; a mono file takes the left one. Integer formats clip samples
/// beyond full scale.
class SoundWriter
{
public:
    /// The file has the given format and the tags of source. Errors name the file by name. Throws
    /// ZException when the format or the file cannot be written.
    SoundWriter(const std::filesystem::path& path, const std::string& name,
                const SoundFormat& format, const SoundReader& source);

    /// Writes the frames [first, first + count) of block. Throws ZException when the disk is full.
    void Write(const StereoBlock& block, int first, int count);
    /// Completes the file; nothing can be written after it. Throws ZException when that fails.
    void Close();

private:
    std::string mName;
    int mChannels;
    std::vector<float> mInterleaved;
    SoundFileHandle mFile;
};

/// Frames in a sound file by its header; 0 when it cannot be read. [any thread]
[[nodiscard]] std::int64_t expectedFrames(const std::filesystem::path& path);

}  // namespace orvane

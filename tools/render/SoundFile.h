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

struct SoundFileCloser
{
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFileHandle = std::unique_ptr<SNDFILE, SoundFileCloser>;

/// What a sound file is made of.
struct SoundFormat
{
    int rate = 0;      // Hz
    int channels = 0;  // 1 or 2
    int code = 0;      // container and sample form, as libsndfile numbers them

    /// Such as "WAV, 24 bit PCM, stereo".
    [[nodiscard]] std::string Describe() const;
};

/// Two channels of samples of one length, full scale at 1.0.
using StereoBlock = std::array<std::vector<float>, 2>;

/// Reads a mono or stereo file as two channels; those of a mono file are alike.
class SoundReader
{
public:
    /// Throws ZException where the file cannot be read or has more than two channels.
    explicit SoundReader(const std::filesystem::path& path);

    [[nodiscard]] const SoundFormat& Format() const { return mFormat; }
    /// Frames that the file's head tells of; the file may hold fewer.
    [[nodiscard]] std::int64_t ExpectedFrames() const { return mExpectedFrames; }
    /// Samples read so far that were not finite and became 0.
    [[nodiscard]] std::int64_t BadSamples() const { return mBadSamples; }

    /// Fills the front of block, which has any size, and clears the rest; gives the frames read,
    /// which are fewer only at the end. Throws ZException where the file is damaged.
    int Read(StereoBlock& block);

    /// Texts such as title and artist, by libsndfile's numbers; null where there is none.
    [[nodiscard]] const char* Text(int kind) const { return sf_get_string(mFile.get(), kind); }

private:
    std::string mName;
    SoundFormat mFormat;
    std::int64_t mExpectedFrames = 0;
    std::int64_t mBadSamples = 0;
    std::vector<float> mInterleaved;
    SoundFileHandle mFile;
};

/// Writes two channels in a format; a mono file gets the left one. Samples beyond full scale are
/// held at it where the format knows no more.
class SoundWriter
{
public:
    /// Takes the texts of the source over. Throws ZException where the format or the file cannot be
    /// written; name is what an error calls the file.
    SoundWriter(const std::filesystem::path& path, const std::string& name,
                const SoundReader& source);

    /// Throws ZException where the disk is full.
    void Write(const StereoBlock& block, int first, int count);
    /// Ends the file; nothing can be written after. Throws ZException where that fails.
    void Close();

private:
    std::string mName;
    int mChannels;
    std::vector<float> mInterleaved;
    SoundFileHandle mFile;
};

/// Throws ZException where the ending of path belongs to a container other than the format's, for
/// the output is always of the input's.
void requireFittingName(const std::filesystem::path& path, const SoundFormat& format);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/SoundFile.h"

#include "tools/render/Failure.h"
#include "tools/render/TargetFile.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace orvane
{

namespace
{

/// libsndfile's Ogg encoder keeps a buffer for each write on the stack, so long writes are split.
constexpr int kFramesPerWrite = 4096;

constexpr std::array<int, 8> kKeptTexts{SF_STR_TITLE,       SF_STR_COPYRIGHT, SF_STR_ARTIST,
                                        SF_STR_COMMENT,     SF_STR_DATE,      SF_STR_ALBUM,
                                        SF_STR_TRACKNUMBER, SF_STR_GENRE};

std::string formatName(int code)
{
    SF_FORMAT_INFO info{};
    info.format = code;
    sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info);
    return info.name ? info.name : "unknown";
}

SF_INFO infoOf(const SoundFormat& format)
{
    SF_INFO info{};
    info.samplerate = format.rate;
    info.channels = format.channels;
    info.format = format.code;
    return info;
}

/// A descriptor of a nameless file with all that standard input holds: sound files are read at more
/// than one place. Throws ZException when the disk is full.
int copyOfStandardInput()
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> copy(std::tmpfile(), std::fclose);
    std::array<char, 65536> piece{};
    std::size_t count = 0;
    while (copy && (count = std::fread(piece.data(), 1, piece.size(), stdin)) > 0) {
        if (std::fwrite(piece.data(), 1, count, copy.get()) != count)
            fail("cannot keep standard input: {}", std::strerror(errno));
    }
    if (!copy || std::fflush(copy.get()) != 0)
        fail("cannot keep standard input: {}", std::strerror(errno));
    const int descriptor = ::dup(::fileno(copy.get()));
    ::lseek(descriptor, 0, SEEK_SET);
    return descriptor;
}

}  // namespace

std::string SoundFormat::Describe() const
{
    return fmt::format("{}, {}, {}", formatName(code & SF_FORMAT_TYPEMASK),
                       formatName(code & SF_FORMAT_SUBMASK), channels == 1 ? "mono" : "stereo");
}

void SoundReader::Open(const std::filesystem::path& path, SF_INFO& info)
{
    if (isStandardStream(path)) {
        mFile.reset(sf_open_fd(copyOfStandardInput(), SFM_READ, &info, SF_TRUE));
        return;
    }
    if (!std::filesystem::exists(path))
        fail("cannot read {}: there is no such file", mName);
    if (std::filesystem::is_directory(path))
        fail("cannot read {}: it is a folder; name a sound file", mName);
    mFile.reset(sf_open(path.c_str(), SFM_READ, &info));
}

SoundReader::SoundReader(const std::filesystem::path& path)
    : mName(isStandardStream(path) ? "standard input" : path.string())
{
    SF_INFO info{};
    Open(path, info);
    if (!mFile)
        fail("cannot read {} as a sound file ({}): WAV, AIFF, FLAC, Ogg "
             "and their like can be read",
             mName, sf_strerror(nullptr));
    if (info.channels > 2)
        fail("{} has {} channels: a voice has one or two; split the "
             "file into mono or stereo files first",
             mName, info.channels);
    mFormat = {info.samplerate, info.channels, info.format};
}

int SoundReader::Read(StereoBlock& block)
{
    const auto channels = static_cast<std::size_t>(mFormat.channels);
    const std::size_t room = block[0].size();
    mInterleaved.resize(room * channels);
    const auto frames = static_cast<std::size_t>(
        sf_readf_float(mFile.get(), mInterleaved.data(), static_cast<sf_count_t>(room)));
    if (sf_error(mFile.get()) != SF_ERR_NO_ERROR)
        fail("{} is damaged ({}): mend or export it again", mName, sf_strerror(mFile.get()));
    for (float& sample : std::span(mInterleaved).first(frames * channels)) {
        if (std::isfinite(sample))
            continue;
        sample = 0.0f;
        ++mBadSamples;
    }
    for (std::size_t c = 0; c < block.size(); ++c) {
        const std::size_t from = std::min(c, channels - 1);
        for (std::size_t i = 0; i < frames; ++i)
            block[c][i] = mInterleaved[i * channels + from];
        std::fill(block[c].begin() + static_cast<std::ptrdiff_t>(frames), block[c].end(), 0.0f);
    }
    return static_cast<int>(frames);
}

SoundWriter::SoundWriter(const std::filesystem::path& path, const std::string& name,
                         const SoundFormat& format, const SoundReader& source)
    : mName(name)
    , mChannels(format.channels)
{
    assert(format.channels == source.Format().channels && format.rate == source.Format().rate);
    SF_INFO info = infoOf(format);
    if (!sf_format_check(&info))
        fail("{} cannot be written: files of the kind {} can only be read; choose another by "
             "--format, such as --format wav",
             mName, format.Describe());
    mFile.reset(sf_open(path.c_str(), SFM_WRITE, &info));
    if (!mFile)
        fail("cannot write {}: {}", mName, sf_strerror(nullptr));
    // Clip instead of wrapping around. This also makes the conversion to float and back exact.
    sf_command(mFile.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    for (const int kind : kKeptTexts) {
        if (const char* text = source.Text(kind))
            sf_set_string(mFile.get(), kind, text);
    }
}

void SoundWriter::Write(const StereoBlock& block, int first, int count)
{
    assert(mFile && first >= 0 && count >= 0);
    assert(static_cast<std::size_t>(first + count) <= block[0].size());
    const auto channels = static_cast<std::size_t>(mChannels);
    mInterleaved.resize(static_cast<std::size_t>(kFramesPerWrite) * channels);
    for (int done = 0; done < count;) {
        const int frames = std::min(count - done, kFramesPerWrite);
        for (std::size_t c = 0; c < channels; ++c) {
            const float* samples = block[c].data() + first + done;
            for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i)
                mInterleaved[i * channels + c] = samples[i];
        }
        if (sf_writef_float(mFile.get(), mInterleaved.data(), frames) != frames)
            fail("cannot write {}: {}", mName, sf_strerror(mFile.get()));
        done += frames;
    }
}

void SoundWriter::Close()
{
    assert(mFile);
    const int error = sf_close(mFile.release());
    if (error != SF_ERR_NO_ERROR)
        fail("cannot write {}: {}", mName, sf_error_number(error));
}

std::int64_t expectedFrames(const std::filesystem::path& path)
{
    SF_INFO info{};
    const SoundFileHandle file(sf_open(path.c_str(), SFM_READ, &info));
    return file ? info.frames : 0;
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/ZHostStream.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstdint>

namespace orvane
{

namespace
{

template <typename Sample>
Sample* channelOf(Sample* const* channels, std::int32_t channel)
{
    return channels != nullptr ? channels[channel] : nullptr;
}

void silence(float* const* outputs, std::uint32_t count)
{
    for (std::int32_t channel = 0; channel < ZHostStream::kChannels; ++channel) {
        if (float* const output = channelOf(outputs, channel))
            std::fill_n(output, count, 0.0f);
    }
}

/// Returns the bits of a sample without its sign, plus one in the exponent's lowest bit: the carry
/// sets the topmost bit when the sample is NaN or infinite, whose exponent bits are all set.
std::uint32_t markNotFinite(float sample)
{
    return (std::bit_cast<std::uint32_t>(sample) & 0x7FFFFFFF) + 0x00800000;
}

bool isMarked(std::uint32_t bits)
{
    return (bits & 0x80000000) != 0;
}

/// Combines the marks of all samples without a branch and in 16 lanes, which the compiler keeps in
/// vector registers.
bool areFinite(std::span<const float> samples)
{
    std::array<std::uint32_t, 16> marks{};
    const std::size_t whole = samples.size() - samples.size() % marks.size();
    for (std::size_t i = 0; i < whole; i += marks.size())
        for (std::size_t lane = 0; lane < marks.size(); ++lane)
            marks[lane] |= markNotFinite(samples[i + lane]);
    for (std::size_t i = whole; i < samples.size(); ++i)
        marks[0] |= markNotFinite(samples[i]);
    return std::none_of(marks.begin(), marks.end(), isMarked);
}

}  // namespace

ZHostStream::ZHostStream() = default;
ZHostStream::~ZHostStream() = default;

void ZHostStream::SetBlockSize(std::int32_t frames)
{
    assert(frames >= 1 && frames <= kMaxBlockSize);
    const auto length = static_cast<std::uint32_t>(frames);
    if (mTransfer)
        mTransfer->Resize(length);
    else
        mTransfer = std::make_unique<ZBuffer>(length, "ZBuffer");
}

void ZHostStream::Run(ZSignalLooper& looper, const float* const* inputs, float* const* outputs,
                      std::int32_t frames, Output output)
{
    assert(frames >= 1);
    const auto count = static_cast<std::uint32_t>(frames);
    if (!mTransfer) {
        if (output == Output::kReplaced)
            silence(outputs, count);
        return;
    }
    // Both channels are read before one is written, since outputs may be the inputs' arrays.
    for (std::int32_t channel = 0; channel < kChannels; ++channel) {
        const std::span<const float> samples = FiniteSamples(channelOf(inputs, channel), count);
        if (looper.InputFree(channel) >= count)
            looper.InputWrite(samples, channel);
    }
    looper.Drain();
    if (looper.OutputAvailable(0) < count)
        looper.Fill(count);
    for (std::int32_t channel = 0; channel < kChannels; ++channel) {
        float* const target = channelOf(outputs, channel);
        if (target != nullptr && output == Output::kReplaced) {
            ReadChannel(looper, channel, {target, count});
            continue;
        }
        ReadChannel(looper, channel, {mTransfer->Data(), count});
        if (target != nullptr)
            AddTo(target, count);
    }
}

// Returns the host's samples in place, or a copy in mTransfer in which every sample is finite.
std::span<const float> ZHostStream::FiniteSamples(const float* input, std::uint32_t count)
{
    if (count > mTransfer->Length())
        throw ZException("Trying to load a Zbuffer with too much data.");
    const std::span<float> own(mTransfer->Data(), count);
    if (input == nullptr) {
        mTransfer->Clear();
        return own;
    }
    if (const std::span<const float> samples(input, count); areFinite(samples))
        return samples;
    mTransfer->Load(input, /*stride*/ 1, /*offset*/ 0, count);
    std::replace_if(
        own.begin(), own.end(), [](float sample) { return isMarked(markNotFinite(sample)); }, 0.0f);
    return own;
}

void ZHostStream::ReadChannel(ZSignalLooper& looper, std::int32_t channel, std::span<float> samples)
{
    if (looper.OutputAvailable(channel) >= samples.size())
        looper.OutputRead(samples, channel);
    else
        std::fill(samples.begin(), samples.end(), 0.0f);
}

void ZHostStream::AddTo(float* output, std::uint32_t count) const
{
    assert(count <= mTransfer->Length());
    const float* const samples = mTransfer->Data();
    for (std::uint32_t i = 0; i < count; ++i) {
        const double sum = static_cast<double>(output[i]) + static_cast<double>(samples[i]);
        output[i] = static_cast<float>(sum);
    }
}

}  // namespace orvane

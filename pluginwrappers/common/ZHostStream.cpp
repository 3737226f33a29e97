// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZHostStream.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <algorithm>
#include <array>
#include <bit>
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

/// The bits of a sample, its sign aside, moved up so that the topmost bit is set for what is no
/// finite number: where all bits of the exponent are set.
std::uint32_t markNotFinite(float sample)
{
    return (std::bit_cast<std::uint32_t>(sample) & 0x7FFFFFFF) + 0x00800000;
}

bool isMarked(std::uint32_t bits)
{
    return (bits & 0x80000000) != 0;
}

/// Looks at all of them without a branch, since nearly always all are finite, and at several at a
/// time, so that it runs in vector registers.
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
    const auto length = static_cast<std::uint32_t>(frames);
    if (mTransfer)
        mTransfer->Resize(length);
    else
        mTransfer = std::make_unique<ZBuffer>(length, "ZBuffer");
}

void ZHostStream::Run(ZSignalLooper& looper, const float* const* inputs, float* const* outputs,
                      std::int32_t frames, Output output)
{
    const auto count = static_cast<std::uint32_t>(frames);
    if (!mTransfer) {
        if (output == Output::kReplaced)
            silence(outputs, count);
        return;
    }
    // Both channels are in before the first goes out: the host may use one array for both ways.
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

/// The channel as it stands in the host's memory, or what can be heard of it in ours.
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
    const float* const samples = mTransfer->Data();
    for (std::uint32_t i = 0; i < count; ++i) {
        const double sum = static_cast<double>(output[i]) + static_cast<double>(samples[i]);
        output[i] = static_cast<float>(sum);
    }
}

}  // namespace orvane

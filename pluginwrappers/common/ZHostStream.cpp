#include "pluginwrappers/common/ZHostStream.h"

#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZSignalLooper.h"

#include <algorithm>
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

/// Makes silence of samples that are no finite numbers: those whose exponent bits are all set. A
/// mask and no branch, so that it runs in vector registers.
void takeOutWhatIsNotFinite(float* samples, std::uint32_t count)
{
    constexpr std::uint32_t kExponent = 0x7F800000;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(samples[i]);
        const std::uint32_t keep = (bits & kExponent) == kExponent ? 0u : ~0u;
        samples[i] = std::bit_cast<float>(bits & keep);
    }
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
        LoadChannel(channelOf(inputs, channel), count);
        if (looper.InputFree(channel) >= count)
            looper.InputWrite(*mTransfer, count, channel);
    }
    looper.Drain();
    if (looper.OutputAvailable(0) < count)
        looper.Fill(count);
    for (std::int32_t channel = 0; channel < kChannels; ++channel) {
        ReadChannel(looper, channel, count);
        if (float* const target = channelOf(outputs, channel))
            StoreChannel(target, count, output);
    }
}

void ZHostStream::LoadChannel(const float* input, std::uint32_t count)
{
    if (count > mTransfer->Length())
        throw ZException(-1, "Trying to load a Zbuffer with too much data.");
    if (input == nullptr) {
        mTransfer->Clear();
        return;
    }
    mTransfer->Load(input, /*stride*/ 1, /*offset*/ 0, count);
    takeOutWhatIsNotFinite(mTransfer->Data(), count);
}

void ZHostStream::ReadChannel(ZSignalLooper& looper, std::int32_t channel, std::uint32_t count)
{
    if (looper.OutputAvailable(channel) >= count)
        looper.OutputRead(*mTransfer, count, channel);
    else
        mTransfer->Clear();
}

void ZHostStream::StoreChannel(float* output, std::uint32_t count, Output how) const
{
    if (how == Output::kReplaced) {
        mTransfer->Store(output, /*stride*/ 1, /*offset*/ 0, count);
        return;
    }
    const float* const samples = mTransfer->Data();
    for (std::uint32_t i = 0; i < count; ++i) {
        const double sum = static_cast<double>(output[i]) + static_cast<double>(samples[i]);
        output[i] = static_cast<float>(sum);
    }
}

}  // namespace orvane

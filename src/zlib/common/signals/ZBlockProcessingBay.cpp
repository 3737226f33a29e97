// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZBlockProcessingBay.h"

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

ZBlockProcessingBay::ZBlockProcessingBay(const boost::shared_ptr<ZXMLElement>& xml,
                                         ZApplication* application)
    : ZSignalBay(xml, application)
    , mChannels(ReadChannelCount(*xml, kMaxBlockChannels))
{
    ZBlockProcessingBay::BuildPorts();
}

ZBlockProcessingBay::~ZBlockProcessingBay() = default;

bool ZBlockProcessingBay::IsKindOf(std::string_view className) const
{
    return className == "ZBlockProcessingBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZBlockProcessingBay::GetClassName() const
{
    return "ZBlockProcessingBayClass";
}

boost::shared_ptr<ZXMLElement> ZBlockProcessingBay::ExtractHeader() const
{
    auto xml = ZSignalBay::ExtractHeader();
    xml->AddAttribute("numchannels", mChannels);
    return xml;
}

boost::shared_ptr<ZBay> ZBlockProcessingBay::Clone()
{
    auto copy = boost::make_shared<ZBlockProcessingBay>(ExtractHeader(), GetApp());
    CopySettingsTo(*copy);
    copy->SetBlockSize(mAutoBlock ? -1 : mBlockSize);
    copy->SetLatency(GetLatency() - mBlockSize);
    return copy;
}

void ZBlockProcessingBay::BuildPorts()
{
    for (std::int32_t channel = 0; channel < mChannels; ++channel) {
        MakeImport("input", ZPort::kAudio);
        MakeExport("output", ZPort::kAudio);
    }
}

ZBuffer& ZBlockProcessingBay::InputBlock(std::int32_t channel) noexcept
{
    assert(channel >= 0 && channel < mChannels && mBlockSize > 0);
    return *mInputBlock[static_cast<std::size_t>(channel)];
}

ZBuffer& ZBlockProcessingBay::OutputBlock(std::int32_t channel) noexcept
{
    assert(channel >= 0 && channel < mChannels && mBlockSize > 0);
    return *mOutputBlock[static_cast<std::size_t>(channel)];
}

ZBlockProcessingBay::Blocks ZBlockProcessingBay::MakeBlocks(std::int32_t size) const
{
    Blocks blocks;
    for (std::int32_t channel = 0; size > 0 && channel < mChannels; ++channel)
        blocks[static_cast<std::size_t>(channel)] =
            std::make_unique<ZBuffer>(static_cast<std::uint32_t>(size), "ZBuffer");
    return blocks;
}

void ZBlockProcessingBay::SetBlockSize(std::int32_t size)
{
    assert(!IsPassRunning());
    const std::int32_t blockSize = size < 0 ? GetMaxBuffer() : size;
    Blocks inputBlock = MakeBlocks(blockSize);
    Blocks outputBlock = MakeBlocks(blockSize);
    mAutoBlock = size < 0;
    mBlockSize = blockSize;
    mInputBlock = std::move(inputBlock);
    mOutputBlock = std::move(outputBlock);
    ZSignalBay::SetLatency(mBlockSize);
    Reset();
}

void ZBlockProcessingBay::SetLatency(std::int32_t extra)
{
    ZSignalBay::SetLatency(mBlockSize + extra);
}

bool ZBlockProcessingBay::Prepare()
{
    if (!ZSignalBay::Prepare())
        return false;
    mAutoBlock = true;
    Reset();
    return true;
}

void ZBlockProcessingBay::SampleRateChanged()
{
    Reset();
}

void ZBlockProcessingBay::MaxBufferChanged()
{
    ZSignalBay::MaxBufferChanged();
    if (mAutoBlock)
        SetBlockSize(-1);
    else
        Reset();
}

void ZBlockProcessingBay::Reset()
{
    mResetPending.store(true, std::memory_order_release);
    ZSignalBay::Reset();
}

void ZBlockProcessingBay::ClearSound() noexcept
{
    for (const Blocks* const blocks : {&mInputBlock, &mOutputBlock})
        for (const auto& block : *blocks)
            if (block)
                block->Clear();
    mFill = 0;
}

void ZBlockProcessingBay::ProcessBlock() noexcept
{
    for (std::int32_t channel = 0; channel < mChannels; ++channel)
        OutputBlock(channel).CopyFrom(InputBlock(channel));
}

void ZBlockProcessingBay::CatchUp(float /*share*/) noexcept
{
}

void ZBlockProcessingBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t count,
                                        std::int32_t /*firstExport*/,
                                        std::int32_t /*exportCount*/) noexcept
{
    if (mResetPending.load(std::memory_order_relaxed) &&
        mResetPending.exchange(false, std::memory_order_acquire))
        ClearSound();
    const auto blockSize = static_cast<std::uint32_t>(mBlockSize);
    if (blockSize == 0)
        DeliverSilence();
    for (std::uint32_t done = 0; blockSize > 0 && done < count;) {
        assert(mFill < blockSize);
        const std::uint32_t n = std::min(count - done, blockSize - mFill);
        MoveSamples(done, n);
        mFill += n;
        done += n;
        if (mFill == blockSize) {
            ProcessBlock();
            mFill = 0;
        }
    }
    if (mFill > 0)
        CatchUp(static_cast<float>(mFill) / static_cast<float>(blockSize));
    for (ZSignalPort* const port : SignalExports())
        port->SetAvailable(count);
}

/// Fills the block from the imports, and the exports from the block before, which is read before
/// ProcessBlock overwrites it.
void ZBlockProcessingBay::MoveSamples(std::uint32_t done, std::uint32_t count) noexcept
{
    const auto channels = std::min(
        {static_cast<std::size_t>(mChannels), SignalImports().size(), SignalExports().size()});
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const ZBuffer& input = *SignalImports()[channel]->GetBuffer();
        ZBuffer& output = *SignalExports()[channel]->GetBuffer();
        mInputBlock[channel]->CopyRange(input, {done, count}, mFill);
        output.CopyRange(*mOutputBlock[channel], {mFill, count}, done);
    }
}

void ZBlockProcessingBay::DeliverSilence() noexcept
{
    for (ZSignalPort* const port : SignalExports())
        port->GetBuffer()->Clear();
}

}  // namespace orvane

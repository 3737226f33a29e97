// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

namespace orvane
{

/// Collects the samples of passes of any length into blocks of a fixed size for an engine, and
/// delivers the previous block's output meanwhile. So a pass delivers as many samples as it takes,
/// delayed by one block. ZBlockProcessingBay itself is a delay of one block.
///
/// A derived class overrides ProcessBlock; calls SetBlockSize in its Prepare, after the base's, and
/// in SampleRateChanged if the block depends on the rate; and calls SetLatency with the latency of
/// its engine.
class ZBlockProcessingBay : public ZSignalBay
{
public:
    /// Most channels: there is one pair of block buffers for each.
    static constexpr std::int32_t kMaxBlockChannels = 2;

    /// Makes an import and an export for each of the attribute numchannels. The bay outputs silence
    /// until SetBlockSize. Throws ZException kGeneral unless numchannels is 1 to kMaxBlockChannels.
    /// [setup]
    ZBlockProcessingBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZBlockProcessingBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Adds the number of channels.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    void SampleRateChanged() override;
    void MaxBufferChanged() override;
    /// Makes the block size follow GetMaxBuffer() until SetBlockSize sets one.
    bool Prepare() override;
    /// Makes the next block of output silent: the next pass begins by clearing the sound. Only a
    /// flag is set here, because some hosts stop on the audio thread while another thread changes
    /// the rate. [any thread]
    void Reset() override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;
    /// Sets the latency to one block plus that of the engine, extra >= 0 samples.
    void SetLatency(std::int32_t extra) override;

    /// Makes an import "input" and an export "output" for each channel. The constructor calls this
    /// version; a derived class that needs other ports changes them in its own constructor.
    virtual void BuildPorts();
    /// Processes the input blocks, GetBlockSize() new samples of each channel, into the output
    /// blocks. [audio thread]
    virtual void ProcessBlock() noexcept;
    /// A pass that ends within a block calls this with the share of the block that is collected
    /// (0 .. 1): a place for work that ProcessBlock puts off, so that no pass costs much more than
    /// another. [audio thread]
    virtual void CatchUp(float share) noexcept;

    /// Replaces the blocks by silent ones of that size, 0 for none; a negative size follows
    /// GetMaxBuffer(). Sets the latency to one block, so that the engine's must be set again.
    /// Throws ZException kOutOfMemory, with the bay as it was. [setup]
    void SetBlockSize(std::int32_t size);
    /// In samples. [audio thread]
    [[nodiscard]] std::int32_t GetBlockSize() const noexcept { return mBlockSize; }
    [[nodiscard]] std::int32_t GetChannelCount() const noexcept { return mChannels; }
    /// Samples collected for the next block, below GetBlockSize() between passes.
    [[nodiscard]] std::uint32_t GetFill() const noexcept { return mFill; }

protected:
    /// Clears the sound: the pass after a Reset calls it first. [audio thread]
    virtual void ClearSound() noexcept;
    /// The blocks of a channel, 0 to GetChannelCount() - 1, while ProcessBlock runs.
    /// [audio thread]
    [[nodiscard]] ZBuffer& InputBlock(std::int32_t channel) noexcept;
    [[nodiscard]] ZBuffer& OutputBlock(std::int32_t channel) noexcept;

private:
    using Blocks = std::array<std::unique_ptr<ZBuffer>, kMaxBlockChannels>;

    [[nodiscard]] Blocks MakeBlocks(std::int32_t size) const;
    void MoveSamples(std::uint32_t done, std::uint32_t count) noexcept;
    void DeliverSilence() noexcept;

    std::atomic<bool> mResetPending{false};  // set by any thread, cleared by the pass
    std::uint32_t mFill = 0;
    const std::int32_t mChannels;
    std::int32_t mBlockSize = 0;
    bool mAutoBlock = false;
    Blocks mInputBlock;
    Blocks mOutputBlock;
};

}  // namespace orvane

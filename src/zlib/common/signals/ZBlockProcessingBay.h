// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <array>
#include <cstdint>
#include <memory>

namespace orvane
{

/// Gathers samples of any count into blocks of a fixed size for an engine that wants these, and
/// meanwhile hands out the block made before. So a pass delivers as many samples as it took in, one
/// block later.
///
/// A derived class overrides ProcessBlock, calls SetBlockSize from its Prepare behind the base's,
/// and from SampleRateChanged when the block depends on the rate, and tells with SetLatency what
/// its engine adds. By itself the bay is a delay of one block.
class ZBlockProcessingBay : public ZSignalBay
{
public:
    /// One pair of block buffers each.
    static constexpr std::int32_t kMaxBlockChannels = 2;

    /// Ports as the attribute numchannels says; no blocks yet, the bay is silent until
    /// SetBlockSize. Throws ZException -1 unless there are 1 to kMaxBlockChannels: a channel more
    /// would be lost without a word. [setup]
    ZBlockProcessingBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZBlockProcessingBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// With the number of channels.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    void SampleRateChanged() override;
    void MaxBufferChanged() override;
    /// From here on the block follows the longest pass, until SetBlockSize says otherwise.
    bool Prepare() override;
    /// Clears the blocks: the next block of output is silence.
    void Reset() override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;
    /// What the engine adds to the one block that the bay takes, in samples.
    void SetLatency(std::int32_t extra) override;

    /// Makes an import "input" and an export "output" for each channel. The constructor calls it:
    /// a derived class that wants others changes them in its own.
    virtual void BuildPorts();
    /// The input blocks hold GetBlockSize() fresh samples of each channel; on return the output
    /// blocks do, too. [audio thread]
    virtual void ProcessBlock() noexcept;

    /// New, empty blocks; 0 for none. A negative size takes the longest pass and follows it. The
    /// latency becomes the block, what an engine adds has to be told again. Throws ZException 2
    /// when there is no memory, with the bay as it was. [setup]
    void SetBlockSize(std::int32_t size);
    /// In samples. [audio thread]
    [[nodiscard]] std::int32_t GetBlockSize() const noexcept { return mBlockSize; }
    [[nodiscard]] std::int32_t GetChannelCount() const noexcept { return mChannels; }
    /// Samples so far in the block, below GetBlockSize() between passes.
    [[nodiscard]] std::uint32_t GetFill() const noexcept { return mFill; }

protected:
    /// The blocks of a channel; they exist while ProcessBlock runs. [audio thread]
    [[nodiscard]] ZBuffer& InputBlock(std::int32_t channel) noexcept;
    [[nodiscard]] ZBuffer& OutputBlock(std::int32_t channel) noexcept;

private:
    using Blocks = std::array<std::unique_ptr<ZBuffer>, kMaxBlockChannels>;

    [[nodiscard]] Blocks MakeBlocks(std::int32_t size) const;
    void MoveSamples(std::uint32_t done, std::uint32_t count) noexcept;
    void DeliverSilence() noexcept;

    std::uint32_t mFill = 0;
    const std::int32_t mChannels;
    std::int32_t mBlockSize = 0;
    bool mAutoBlock = false;
    Blocks mInputBlock;
    Blocks mOutputBlock;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/signals/ZBay.h"
#include "zlib/common/signals/ZSignalPort.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace orvane
{

/// A bay that moves samples; by itself a container that makes a network of its children.
///
/// A pass starts at a sink: SetRequested, RequestInputs, Pull. The request goes upstream; a bay
/// hands it on when the last of its live consumers has asked. Then the pull recurses upstream, and
/// every bay runs after its sources and once, however many read it. A bay that no sink demands is
/// not active and does not run.
///
/// The pass is [audio thread]: nothing in it allocates, locks, waits or throws, so what it calls is
/// noexcept. All else is [setup]: it holds the interface lock, or runs on the audio thread between
/// passes, and may allocate. The host sees to it that setup never overlaps a pass.
///
/// The time that a pull takes is not measured: nothing would read it, and a clock read twice a bay
/// and pass is not free.
class ZSignalBay : public ZBay
{
public:
    /// Samples a pass, before anybody has told.
    static constexpr std::int32_t kDefaultMaxBuffer = 512;
    /// Imports that may read one bay, so that each finds its place in the list of a pass.
    static constexpr std::int32_t kMaxRequesters = 64;
    /// Channels of a bay: what one bay can read of another.
    static constexpr std::int32_t kMaxChannels = kMaxRequesters;

    explicit ZSignalBay(std::string_view name = {}, ZLooper* looper = nullptr);
    /// As ZBay, and publishes the ports of children that "publish" names. Unknown children and
    /// ports are skipped.
    ZSignalBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZSignalBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZMAXBUFFERCHANGED ("maxbuf", signed 32-bit): SetMaxBuffer, then Prepare. ZSAMPLERATECHANGED
    /// ("rate", float, above 0): the rate, here and in all children. ZSETDEFAULTS: SetDefaults.
    /// ZRESET: Reset.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Under the sink's processing lock, which orders route changes among themselves.
    void Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void RouteAdded(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void RouteRemoved(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void ImportAdded(ZPort& port) override;
    void ExportAdded(ZPort& port) override;
    void ImportRemoved(ZPort& port) override;
    void ExportRemoved(ZPort& port) override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;

    /// Delivers the message to every child, now.
    virtual void BroadcastToBays(const boost::shared_ptr<const ZMessage>& message);
    /// Changes the number of audio imports, or exports. Throws ZException -1 here.
    virtual void SetInputChannelCount(std::int32_t count);
    virtual void SetOutputChannelCount(std::int32_t count);
    /// Audio imports, or exports, published ones included.
    [[nodiscard]] virtual std::int32_t GetInputChannelCount() const;
    [[nodiscard]] virtual std::int32_t GetOutputChannelCount() const;
    /// GetSampleRate is new. Nothing here.
    virtual void SampleRateChanged();
    /// GetMaxBuffer is new: replaces the buffers of the own ports.
    virtual void MaxBufferChanged();
    virtual void SetDefaults();
    /// Makes ready to run; may come again. False when the bay cannot.
    virtual bool Prepare();
    /// Forgets all signal.
    virtual void Reset();

    /// Asks the sources of all imports for the requested samples. [audio thread]
    virtual void RequestInputs() noexcept;
    /// An import asks this bay for samples. Does nothing unless the bay is active. [audio thread]
    virtual void RequestFrom(ZSignalPort& importPort) noexcept;
    /// Runs what is upstream and has not run, then this bay. [audio thread]
    virtual void Pull() noexcept;
    /// What a processing bay implements: reads count samples from the buffers of its imports,
    /// writes them to those of its exports, and sets what is available there. count may be 0 and is
    /// never above GetMaxBuffer(). position counts samples on the bay's own time base; exports
    /// firstExport to firstExport + exportCount - 1 are wanted: all of them. [audio thread]
    virtual void ProcessSignal(std::uint64_t position, std::uint32_t count,
                               std::int32_t firstExport, std::int32_t exportCount) noexcept;
    /// The offline form of a pass: runs the bay over the positions [from, to) as far as its sources
    /// deliver. [setup]
    virtual void PullRange(std::uint64_t from, std::uint64_t to);

    /// The next request gets that position here; with propagate all bays upstream drop their
    /// offset.
    virtual void SetPosition(std::uint64_t position, bool propagate);
    /// [any thread on which a pass may run]
    [[nodiscard]] virtual std::uint64_t GetPosition() const;
    virtual void SetLatency(std::int32_t samples);
    /// A new tag "preset" with that name.
    [[nodiscard]] virtual boost::shared_ptr<ZXMLElement>
    ExtractPresetHeader(std::string_view name) const;

    /// Longest run of samples in a pass, here and in the children; replaces the buffers of the
    /// ports. Throws ZException -1 unless samples is above 0.
    void SetMaxBuffer(std::int32_t samples);
    [[nodiscard]] std::int32_t GetMaxBuffer() const noexcept { return mMaxBuffer; }
    /// In Hz. [audio thread]
    [[nodiscard]] float GetSampleRate() const noexcept { return mSampleRate; }
    /// In samples; of a container the sum over its children, even where they stand side by side.
    [[nodiscard]] std::int32_t GetLatency() const;

    /// How many samples the next pass asks of a sink, GetMaxBuffer() at most. [audio thread]
    void SetRequested(std::uint32_t count) noexcept;
    /// Samples that the pass in course asks of this bay. [audio thread]
    [[nodiscard]] std::uint32_t GetRequested() const noexcept { return mRequested; }

    /// A sink keeps itself and all that it reads active.
    [[nodiscard]] bool IsSink() const noexcept { return mIsSink; }
    [[nodiscard]] bool IsActive() const noexcept { return mActive; }
    /// Live bays that read this one, each counted once.
    [[nodiscard]] std::int32_t GetDemand() const noexcept { return mDemand; }
    /// Null when not active; itself when it is a sink; else the nearest sink downstream.
    [[nodiscard]] ZSignalBay* GetSink();

protected:
    /// The own ports, in order, ready for the pass: published ones are their owners' to run.
    [[nodiscard]] const std::vector<ZSignalPort*>& SignalImports() const noexcept
    {
        return mSignalImports;
    }
    [[nodiscard]] const std::vector<ZSignalPort*>& SignalExports() const noexcept
    {
        return mSignalExports;
    }
    /// Appends own ports of the type. [setup]
    void MakeImport(std::string_view name, ZPort::Type type);
    void MakeExport(std::string_view name, ZPort::Type type);
    /// The attribute numchannels. Throws ZException -1 unless it is 1 to max.
    [[nodiscard]] static std::int32_t ReadChannelCount(const ZXMLElement& xml, std::int32_t max);
    /// Throws ZException -1 unless count is 0 to kMaxChannels.
    void CheckChannelCount(std::int32_t count) const;
    /// Looper, sample rate, buffer size and latency, for a clone.
    void CopySettingsTo(ZSignalBay& copy);
    void MakeSink() { mIsSink = true; }
    /// Wakes the bay and all that it reads.
    void Activate();
    [[nodiscard]] std::int32_t GetMaxReaders() const override { return kMaxRequesters; }

private:
    void Publish(const ZXMLElement& xml);
    [[nodiscard]] std::unique_lock<ZLock> LockSink();
    void CollectOwnPorts();
    void EnterPort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                   ZLockedList<ZSignalPort*>& control);
    void LeavePort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                   ZLockedList<ZSignalPort*>& control);
    [[nodiscard]] std::vector<boost::shared_ptr<ZSignalBay>> SignalBays() const;

    [[nodiscard]] std::vector<ZSignalBay*> Sources() const;
    void UpdateSources();
    void Deactivate();
    void AddConsumer();
    void RemoveConsumer();
    void ForgetRequester(const ZPort& importPort);

    [[nodiscard]] static ZSignalBay* LiveSourceOf(const ZSignalPort& importPort) noexcept;
    void EnterRequester(ZSignalPort& importPort) noexcept;
    [[nodiscard]] bool HasAsked(const ZBay* consumer) const noexcept;
    void TakePosition(std::uint64_t position) noexcept;
    [[nodiscard]] std::uint32_t PullImports() noexcept;
    void ServeRequesters() noexcept;

    bool mIsSink = false;
    ZLockedList<ZSignalPort*> mAudioImports{"AudioImportList"};
    ZLockedList<ZSignalPort*> mAudioExports{"AudioExportList"};
    ZLockedList<ZSignalPort*> mControlImports{"ControlImportList"};
    ZLockedList<ZSignalPort*> mControlExports{"ControlExportList"};
    std::vector<ZSignalPort*> mSignalImports;
    std::vector<ZSignalPort*> mSignalExports;
    std::array<ZSignalPort*, kMaxRequesters> mRequesters{};  // imports to serve in this pass
    std::int32_t mRequesterCount = 0;
    std::int32_t mConsumersHeard = 0;  // bays behind the requesters
    std::uint64_t mPosition = 0;
    std::uint32_t mRequested = 0;
    std::uint64_t mPositionOffset = 0;  // what the consumers' positions are ahead, modulo 2^64
    bool mPositionReset = false;
    std::uint64_t mResetPosition = 0;
    std::unique_ptr<ZLock> mProcessingLock;
    bool mActive = false;
    std::int32_t mDemand = 0;
    std::vector<ZSignalBay*> mLiveSources;  // sorted: the bays that count this one as a consumer
    std::int32_t mLatency = 0;
    float mSampleRate = 44100.0f;
    std::int32_t mMaxBuffer = kDefaultMaxBuffer;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/signals/ZBay.h"
#include "zlib/common/signals/ZSignalPort.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace orvane
{

/// A bay that processes samples. The base class is a container for a network of child bays.
///
/// A pass starts at a sink, with RunPass. First the request for samples goes upstream: a bay passes
/// it on when all its active consumers have asked. Then Pull recurses upstream, so that every bay
/// runs after its sources, and once, however many bays read it. A bay that no sink needs is not
/// active and does not run.
///
/// The operations of a pass are [audio thread]: nothing in them allocates, locks, waits or throws.
/// All others are [setup]: their caller holds the interface lock or is the audio thread between two
/// passes, and they may allocate. They never overlap a pass of a sink that the bay feeds, which is
/// asserted; the host guarantees it.
class ZSignalBay : public ZBay
{
public:
    /// Samples of the longest pass, before SetMaxBuffer.
    static constexpr std::int32_t kDefaultMaxBuffer = 512;
    /// Imports that may read one bay: the length of the requester table of a pass.
    static constexpr std::int32_t kMaxRequesters = 64;
    /// Most channels of a bay, since one bay can read as many of another.
    static constexpr std::int32_t kMaxChannels = kMaxRequesters;

    explicit ZSignalBay(std::string_view name = {}, ZLooper* looper = nullptr);
    /// As ZBay, and publishes the ports of child bays that the tags "publish" name. Skips unknown
    /// bays and ports. [setup]
    ZSignalBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZSignalBay() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZMAXBUFFERCHANGED ("maxbuf", signed 32-bit): SetMaxBuffer, then Prepare. ZSAMPLERATECHANGED
    /// ("rate", float, above 0): sets the rate of this bay and of all child bays. ZSETDEFAULTS:
    /// SetDefaults. ZRESET: Reset. Ignores all other messages.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    void ImportAdded(ZPort& port) override;
    void ExportAdded(ZPort& port) override;
    void ImportRemoved(ZPort& port) override;
    void ExportRemoved(ZPort& port) override;
    void RouteAdded(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void RouteRemoved(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    /// These two hold the sink's processing lock, so that route changes exclude each other.
    void Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    void Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex) override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;

    /// Calls HandleZMessage of every child bay.
    virtual void BroadcastToBays(const boost::shared_ptr<const ZMessage>& message);
    /// Changes the number of audio imports. Throws ZException kGeneral in ZSignalBay.
    virtual void SetInputChannelCount(std::int32_t count);
    /// The number of audio imports, published ones included.
    [[nodiscard]] virtual std::int32_t GetInputChannelCount() const;
    /// Changes the number of audio exports. Throws ZException kGeneral in ZSignalBay.
    virtual void SetOutputChannelCount(std::int32_t count);
    /// The number of audio exports, published ones included.
    [[nodiscard]] virtual std::int32_t GetOutputChannelCount() const;
    /// Hook: GetSampleRate has changed. Does nothing in ZSignalBay.
    virtual void SampleRateChanged();
    /// Hook: GetMaxBuffer has changed. Reallocates the buffers of the own ports.
    virtual void MaxBufferChanged();
    /// Sets the elements of all child bays to their defaults.
    virtual void SetDefaults();
    /// Makes this bay and its child bays ready to run; may be called again. False when it fails.
    virtual bool Prepare();
    /// Clears all state that depends on past samples, here and in the child bays.
    virtual void Reset();

    /// Passes the request for samples on to the sources of all imports. [audio thread]
    virtual void RequestInputs() noexcept;
    /// Receives the request of an import that reads this bay. Does nothing unless the bay is
    /// active. [audio thread]
    virtual void RequestFrom(ZSignalPort& importPort) noexcept;
    /// Runs all bays upstream that have not yet run in this pass, then this bay. [audio thread]
    virtual void Pull() noexcept;
    /// The processing of a bay: reads count samples, 0 to GetMaxBuffer(), from the buffers of its
    /// imports, writes them to the buffers of its exports and sets how many are available there.
    /// position is in samples, on the bay's own time base. firstExport and exportCount name all
    /// exports. Does nothing in ZSignalBay. [audio thread]
    virtual void ProcessSignal(std::uint64_t position, std::uint32_t count,
                               std::int32_t firstExport, std::int32_t exportCount) noexcept;
    /// The offline form of a pass: runs the bay over the positions [from, to), or until its sources
    /// deliver nothing more. [audio thread]
    virtual void PullRange(std::uint64_t from, std::uint64_t to);

    /// Makes the next request start at that position on this bay's time base. propagate: clears the
    /// offset between time bases in all bays upstream. [setup]
    virtual void SetPosition(std::uint64_t position, bool propagate);
    /// Sample position of the last request. [audio thread]
    [[nodiscard]] virtual std::uint64_t GetPosition() const;
    /// samples >= 0. [setup]
    virtual void SetLatency(std::int32_t samples);
    /// Makes a tag "preset" with that name.
    [[nodiscard]] virtual boost::shared_ptr<ZXMLElement>
    ExtractPresetHeader(std::string_view name) const;

    /// Sets the number of samples of the longest pass, here and in the child bays, and reallocates
    /// the buffers of their ports. Throws ZException kGeneral unless samples is above 0. [setup]
    void SetMaxBuffer(std::int32_t samples);
    [[nodiscard]] std::int32_t GetMaxBuffer() const noexcept { return mMaxBuffer; }
    /// In Hz. [audio thread]
    [[nodiscard]] float GetSampleRate() const noexcept { return mSampleRate; }
    /// In samples. The latency of a container is the sum over its child bays, even of parallel
    /// ones.
    [[nodiscard]] std::int32_t GetLatency() const;

    /// Runs a pass of count samples, limited to GetMaxBuffer(), from this bay, a sink. The caller
    /// does not hold the interface lock. [audio thread]
    void RunPass(std::uint32_t count) noexcept;
    /// Whether the sink that this bay feeds is running a pass; for assertions. [setup]
    [[nodiscard]] bool IsPassRunning();
    /// Sets how many samples a sink requests in the next pass, limited to GetMaxBuffer().
    /// [audio thread]
    void SetRequested(std::uint32_t count) noexcept;
    /// Samples that the current pass requests of this bay. [audio thread]
    [[nodiscard]] std::uint32_t GetRequested() const noexcept { return mRequested; }

    /// Whether a sink needs this bay, directly or through other bays.
    [[nodiscard]] bool IsActive() const noexcept { return mActive; }
    /// The number of active bays that read this one.
    [[nodiscard]] std::int32_t GetDemand() const noexcept { return mDemand; }
    /// Null unless active; this bay if it is a sink; else the nearest sink downstream.
    [[nodiscard]] ZSignalBay* GetSink();

protected:
    /// The signal ports that this bay owns, in order: published ports are served by their owners.
    /// [audio thread]
    [[nodiscard]] const std::vector<ZSignalPort*>& SignalImports() const noexcept
    {
        return mSignalImports;
    }
    [[nodiscard]] const std::vector<ZSignalPort*>& SignalExports() const noexcept
    {
        return mSignalExports;
    }
    /// Appends a port of its own. [setup]
    void MakeImport(std::string_view name, ZPort::Type type);
    void MakeExport(std::string_view name, ZPort::Type type);
    /// Reads the attribute numchannels. Throws ZException kGeneral unless it is 1 to max.
    [[nodiscard]] static std::int32_t ReadChannelCount(const ZXMLElement& xml, std::int32_t max);
    /// Throws ZException kGeneral unless count is 0 to kMaxChannels.
    void CheckChannelCount(std::int32_t count) const;
    /// Gives a clone this bay's looper, sample rate, buffer size and latency.
    void CopySettingsTo(ZSignalBay& copy);
    void MakeSink() { mIsSink = true; }
    /// Makes this bay and all bays that it reads active.
    void Activate();
    [[nodiscard]] std::int32_t GetMaxReaders() const override { return kMaxRequesters; }

private:
    void Publish(const ZXMLElement& xml);
    [[nodiscard]] std::unique_lock<ZLock> LockSink();
    void EnterPort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                   ZLockedList<ZSignalPort*>& control, std::vector<ZSignalPort*>& own);
    void LeavePort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                   ZLockedList<ZSignalPort*>& control, std::vector<ZSignalPort*>& own);
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
    std::atomic<bool> mPassRuns{false};  // of a sink: written by the thread that runs the pass
    ZLockedList<ZSignalPort*> mAudioImports{"AudioImportList"};
    ZLockedList<ZSignalPort*> mAudioExports{"AudioExportList"};
    ZLockedList<ZSignalPort*> mControlImports{"ControlImportList"};
    ZLockedList<ZSignalPort*> mControlExports{"ControlExportList"};
    std::vector<ZSignalPort*> mSignalImports;
    std::vector<ZSignalPort*> mSignalExports;
    std::array<ZSignalPort*, kMaxRequesters> mRequesters{};  // imports that asked in this pass
    std::int32_t mRequesterCount = 0;
    std::int32_t mConsumersHeard = 0;  // bays that own these imports
    std::uint64_t mPosition = 0;
    std::uint32_t mRequested = 0;
    std::uint64_t mPositionOffset = 0;  // the consumers' position minus this bay's, modulo 2^64
    bool mPositionReset = false;
    std::uint64_t mResetPosition = 0;
    std::unique_ptr<ZLock> mProcessingLock;
    bool mActive = false;
    std::int32_t mDemand = 0;
    std::vector<ZSignalBay*> mLiveSources;  // bays that count this one in mDemand; sorted
    std::int32_t mLatency = 0;
    float mSampleRate = 44100.0f;
    std::int32_t mMaxBuffer = kDefaultMaxBuffer;
};

/// Makes a ZSAMPLERATECHANGED with the field "rate", in Hz, above 0.
[[nodiscard]] boost::shared_ptr<const ZMessage> makeSampleRateMessage(float rate);

}  // namespace orvane

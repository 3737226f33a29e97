// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLooper.h"
#include "zlib/common/objects/ZSemaphore.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvane
{

class ZBuffer;
class ZInputBay;
class ZOutputBay;
class ZSignalBay;
class ZSignalDriver;
class ZThread;

/// Owns the two ends of the signal network, the stereo bays "input" and "output", and runs passes
/// through whatever lies between them. Its queue is run dry by whoever runs the passes, between two
/// of them, so messages for the end bays never meet a pass.
///
/// Three threads meet here. Settings come from the interface thread or the host, with passes at
/// rest [setup]. Drain and Fill belong to the thread that clocks the looper, normally the host's
/// audio thread [audio thread]; should two threads clock it, one of them finds the network busy and
/// goes on without. The FIFOs have one writer and one reader each, which need not be that thread.
class ZSignalLooper : public ZLooper
{
public:
    static constexpr std::int32_t kChannels = 2;

    /// Both end bays, prepared; so "output" is a sink from the start. [setup]
    explicit ZSignalLooper(ZApplication* app);
    /// Stops its own threads; the end bays drop their routes.
    ~ZSignalLooper() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    /// Has no window and no timer: hands the settings to the driver and both end bays and empties
    /// the FIFOs. A running driver is stopped meanwhile. [setup]
    void InitLooper() override;
    /// Nothing: no message thread serves this looper.
    void Run() override;
    /// A signal bay is prepared, and sizes and rates are posted to it.
    void HandlerAdded(ZHandler* handler) override;

    /// Null for none. The looper is the driver's, too. [setup]
    void SetDriver(const boost::shared_ptr<ZSignalDriver>& driver);
    [[nodiscard]] const boost::shared_ptr<ZSignalDriver>& GetDriver() const { return mDriver; }
    /// In samples; taken over by the next InitLooper, and so are the next two. [setup]
    void SetBufferSizes(std::uint32_t preferred, std::uint32_t maximum);
    /// Both sizes become the smallest power of two not below size.
    void SetBufferSize(std::uint32_t size);
    /// In Hz.
    void SetSampleRate(float rate);
    [[nodiscard]] float GetSampleRate() const { return mSampleRate; }
    [[nodiscard]] std::uint32_t GetPreferredBuffer() const { return mPreferredBuffer; }
    [[nodiscard]] std::uint32_t GetMaxBuffer() const { return mMaxBuffer; }

    /// Owned here; handlers of this looper.
    [[nodiscard]] const boost::shared_ptr<ZInputBay>& GetInputBay() const { return mInputBay; }
    [[nodiscard]] const boost::shared_ptr<ZOutputBay>& GetOutputBay() const { return mOutputBay; }
    /// A further sink, which each Fill serves after the output bay. [setup]
    void AddExtraSink(ZSignalBay* sink);
    void RemoveExtraSink(ZSignalBay* sink);

    /// Samples that the FIFO of an input channel can take. channel: 0 to kChannels - 1, here and
    /// below. [writer]
    [[nodiscard]] std::uint32_t InputFree(std::int32_t channel) const noexcept;
    /// Appends the first count samples, at most InputFree. [writer]
    void InputWrite(const ZBuffer& buffer, std::uint32_t count, std::int32_t channel);
    void InputWrite(std::span<const float> samples, std::int32_t channel);
    /// Samples in the FIFO of an output channel. [reader]
    [[nodiscard]] std::uint32_t OutputAvailable(std::int32_t channel) const noexcept;
    /// Takes count samples, at most OutputAvailable, to the start of buffer. [reader]
    void OutputRead(ZBuffer& buffer, std::uint32_t count, std::int32_t channel);
    void OutputRead(std::span<float> samples, std::int32_t channel);

    /// Delivers what is posted to the looper's handlers. Takes no lock when nothing waits. [audio
    /// thread]
    void Drain();
    /// Runs passes until count samples, or all there are, have reached the output FIFOs, and gives
    /// back how many have. [audio thread]
    std::uint32_t Fill(std::uint32_t count) noexcept;
    /// The longest queue that Drain has met. [any thread]
    [[nodiscard]] std::size_t GetHighWater() const { return mHighWater; }

    /// Starts the driver, and a thread that fills the output FIFOs when the driver signals. [setup]
    void Start();
    /// Stops both; gives up the interface lock meanwhile. The network is reset. [setup]
    void Stop();
    [[nodiscard]] bool IsRunning() const { return mRunning; }
    /// A driver's word that its device has taken samples. [any thread]
    void SignalFill();

private:
    class Pass;

    static void RunFillThread(void* looper);
    void FillWhileRunning();
    void FillOutput();
    std::uint32_t PassUntil(std::uint32_t count) noexcept;
    static void RunPass(ZSignalBay& sink, std::uint32_t count) noexcept;

    std::atomic<bool> mRunning{false};  // from Start to Stop
    ZSemaphore mFillSemaphore{"fillsem", 0};
    std::unique_ptr<ZThread> mFillThread;
    std::atomic<bool> mInPass{false};  // somebody drains or fills
    boost::shared_ptr<ZInputBay> mInputBay;
    boost::shared_ptr<ZOutputBay> mOutputBay;
    std::vector<ZSignalBay*> mExtraSinks;
    std::uint32_t mPreferredBuffer = 512;
    std::uint32_t mMaxBuffer = 512;
    std::atomic<float> mSampleRate{44100.0f};
    std::atomic<std::size_t> mHighWater{0};
    boost::shared_ptr<ZSignalDriver> mDriver;
};

}  // namespace orvane

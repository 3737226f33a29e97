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

class ZInputBay;
class ZOutputBay;
class ZSignalBay;
class ZSignalDriver;
class ZThread;

/// Owns the two ends of the signal network, the stereo bays "input" and "output", and runs passes
/// through the network between them. The thread that runs the passes also delivers the looper's
/// messages, between two passes, so that a message to an end bay never overlaps a pass.
///
/// Settings come from the interface thread or the host while no pass runs [setup]. Drain and Fill
/// are called by the thread that clocks the looper, normally the host's audio thread [audio
/// thread]. When two threads call them at once, one of the calls does nothing. Each FIFO has one
/// writer and one reader, which may be other threads.
class ZSignalLooper : public ZLooper
{
public:
    static constexpr std::int32_t kChannels = 2;

    /// Makes and prepares both end bays, so that "output" is a sink from the start. [setup]
    explicit ZSignalLooper(ZApplication* app);
    /// Stops the fill thread and the driver; removes the routes of the end bays.
    ~ZSignalLooper() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;

    /// Applies the settings to the driver and both end bays and empties the FIFOs; makes no timer.
    /// Stops a running driver and starts it again. [setup]
    void InitLooper() override;
    /// Does nothing: no message thread serves this looper.
    void Run() override;
    /// Prepares a signal bay and posts the buffer size and the sample rate to it.
    void HandlerAdded(ZHandler* handler) override;

    /// Sets the driver, null for none, and becomes the driver's looper. [setup]
    void SetDriver(const boost::shared_ptr<ZSignalDriver>& driver);
    [[nodiscard]] const boost::shared_ptr<ZSignalDriver>& GetDriver() const { return mDriver; }
    /// In samples; 0 < preferred <= maximum. Applied by the next InitLooper. [setup]
    void SetBufferSizes(std::uint32_t preferred, std::uint32_t maximum);
    /// Sets both sizes to the smallest power of two not below size. [setup]
    void SetBufferSize(std::uint32_t size);
    /// In Hz, above 0. Applied by the next InitLooper. [setup]
    void SetSampleRate(float rate);
    [[nodiscard]] float GetSampleRate() const { return mSampleRate; }
    [[nodiscard]] std::uint32_t GetMaxBuffer() const { return mMaxBuffer; }

    /// The end bays: owned by this looper and handlers of it.
    [[nodiscard]] const boost::shared_ptr<ZInputBay>& GetInputBay() const { return mInputBay; }
    [[nodiscard]] const boost::shared_ptr<ZOutputBay>& GetOutputBay() const { return mOutputBay; }
    /// Adds or removes a further sink, for which each Fill runs a pass after the output bay's.
    /// [setup]
    void AddExtraSink(ZSignalBay* sink);
    void RemoveExtraSink(ZSignalBay* sink);

    /// Samples that the FIFO of an input channel can take. channel: 0 to kChannels - 1, here and
    /// below. [writer]
    [[nodiscard]] std::uint32_t InputFree(std::int32_t channel) const noexcept;
    /// Appends samples, at most InputFree. Throws ZException kGeneral for more. [writer]
    void InputWrite(std::span<const float> samples, std::int32_t channel);
    /// Samples in the FIFO of an output channel. [reader]
    [[nodiscard]] std::uint32_t OutputAvailable(std::int32_t channel) const noexcept;
    /// Fills samples, at most OutputAvailable. Throws ZException kGeneral for more. [reader]
    void OutputRead(std::span<float> samples, std::int32_t channel);

    /// Delivers the messages that are posted to the looper's handlers. Takes no lock when there are
    /// none. [audio thread]
    void Drain();
    /// Runs passes until count samples have reached the output FIFOs or the input has run out.
    /// Gives back how many samples have reached them. The caller does not hold the interface lock.
    /// [audio thread]
    std::uint32_t Fill(std::uint32_t count) noexcept;
    /// The longest queue that Drain has met. [any thread]
    [[nodiscard]] std::size_t GetHighWater() const { return mHighWater; }

    /// Starts the driver, and a thread that fills the output FIFOs when SignalFill is called.
    /// [setup]
    void Start();
    /// Stops both and resets the end bays. Gives up the interface lock meanwhile. [setup]
    void Stop();
    [[nodiscard]] bool IsRunning() const { return mRunning; }
    /// Called by a driver when its device has taken samples. [any thread]
    void SignalFill();

private:
    class Pass;

    static void RunFillThread(void* looper);
    void FillWhileRunning();
    void FillOutput();
    std::uint32_t PassUntil(std::uint32_t count) noexcept;

    std::atomic<bool> mRunning{false};  // from Start to Stop
    ZSemaphore mFillSemaphore{"fillsem", 0};
    std::unique_ptr<ZThread> mFillThread;
    std::atomic<bool> mInPass{false};  // a thread drains or fills
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

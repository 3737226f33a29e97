// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace orvane
{

class ZSignalLooper;

/// The clock of a signal looper: it decides when passes run. The base class has neither clock nor
/// devices and only stores whether it is open and running; a host runs the passes itself. Derived
/// classes have a clock. Set up by one thread at a time; the flags may be read on any thread.
class ZSignalDriver : public ZObject
{
public:
    explicit ZSignalDriver(std::string_view name = "ZSignalDriver");

    /// The driver's time in ms. Throws ZException kGeneral in ZSignalDriver, which has none.
    [[nodiscard]] virtual double GetMsTime();
    /// The number of devices that can be opened; 0 in ZSignalDriver.
    [[nodiscard]] virtual std::int32_t GetDeviceCount(bool isInput) const;
    /// Throws ZException kGeneral for an index without a device.
    [[nodiscard]] virtual std::string GetDeviceName(bool isInput, std::int32_t index) const;
    /// Prepares for Start with the current buffer size and rates. [setup]
    virtual void Open();
    /// [setup]
    virtual void Close();
    /// Sets the samples of one pass. [setup]
    virtual void SetBufferSize(std::uint32_t samples);
    /// In Hz, for input and output. [setup]
    virtual void SetSampleRate(float rate);
    [[nodiscard]] virtual float GetInputRate() const;
    [[nodiscard]] virtual float GetOutputRate() const;
    [[nodiscard]] virtual bool IsStopped() const;
    [[nodiscard]] virtual bool IsRunning() const;
    /// When this returns, the driver runs no pass. [setup]
    virtual void Stop();
    /// [setup]
    virtual void Start();

    /// The looper that the driver clocks, null for none; not owned. [setup]
    void SetLooper(ZSignalLooper* looper) { mLooper = looper; }
    [[nodiscard]] ZSignalLooper* GetLooper() const { return mLooper; }
    [[nodiscard]] bool IsOpen() const { return mOpen; }
    [[nodiscard]] std::uint32_t GetBufferSize() const { return mBufferSize; }

private:
    float mInputRate = 44100.0f;   // Hz
    float mOutputRate = 44100.0f;  // Hz
    std::uint32_t mBufferSize = 512;
    ZSignalLooper* mLooper = nullptr;
    std::atomic<bool> mOpen{false};
    std::atomic<bool> mRunning{false};
};

}  // namespace orvane

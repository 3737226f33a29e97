// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZObject.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace orvane
{

class ZSignalLooper;

/// The clock of a signal looper: what makes it run passes. This one has no clock and no devices;
/// whoever drives the looper, such as a host, does so by itself, and the driver only remembers
/// whether it is open and running. Classes with a clock of their own replace its operations.
///
/// Set up from one thread at a time; the flags may be read by any.
class ZSignalDriver : public ZObject
{
public:
    explicit ZSignalDriver(std::string_view name = "ZSignalDriver");

    /// The driver's own time.
    /// Throws ZException -1: a plain driver has none.
    [[nodiscard]] virtual double GetMsTime();
    /// Devices that can be opened: none here.
    [[nodiscard]] virtual std::int32_t GetDeviceCount(bool isInput) const;
    /// Throws ZException -1 for an index that is no device's.
    [[nodiscard]] virtual std::string GetDeviceName(bool isInput, std::int32_t index) const;
    /// Makes ready for Start, with the sizes and rates set before. [setup]
    virtual void Open();
    virtual void Close();
    /// In samples, one pass's. [setup]
    virtual void SetBufferSize(std::uint32_t samples);
    /// In Hz, for input and output. [setup]
    virtual void SetSampleRate(float rate);
    [[nodiscard]] virtual float GetInputRate() const;
    [[nodiscard]] virtual float GetOutputRate() const;
    [[nodiscard]] virtual bool IsStopped() const;
    [[nodiscard]] virtual bool IsRunning() const;
    /// No pass of the driver's runs after the return. [setup]
    virtual void Stop();
    virtual void Start();

    /// The looper that the driver clocks; not owned. [setup]
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

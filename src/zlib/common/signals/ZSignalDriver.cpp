// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalDriver.h"

#include "zlib/common/objects/ZException.h"

namespace orvane
{

ZSignalDriver::ZSignalDriver(std::string_view name)
    : ZObject(name)
{
}

double ZSignalDriver::GetMsTime()
{
    throw ZException("Illegal call to ZSignalDriver::GetMsTime()...use subclass instead");
}

std::int32_t ZSignalDriver::GetDeviceCount(bool /*isInput*/) const
{
    return 0;
}

std::string ZSignalDriver::GetDeviceName(bool /*isInput*/, std::int32_t index) const
{
    throw ZException("There is no audio device " + std::to_string(index));
}

void ZSignalDriver::Open()
{
    mOpen = true;
}

void ZSignalDriver::Close()
{
    mOpen = false;
}

void ZSignalDriver::SetBufferSize(std::uint32_t samples)
{
    mBufferSize = samples;
}

void ZSignalDriver::SetSampleRate(float rate)
{
    mInputRate = rate;
    mOutputRate = rate;
}

float ZSignalDriver::GetInputRate() const
{
    return mInputRate;
}

float ZSignalDriver::GetOutputRate() const
{
    return mOutputRate;
}

bool ZSignalDriver::IsStopped() const
{
    return !IsRunning();
}

bool ZSignalDriver::IsRunning() const
{
    return mRunning;
}

void ZSignalDriver::Stop()
{
    mRunning = false;
}

void ZSignalDriver::Start()
{
    mRunning = true;
}

}  // namespace orvane

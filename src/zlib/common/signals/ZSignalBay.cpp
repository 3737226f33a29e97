// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalBay.h"

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>

namespace orvane
{

ZSignalBay::ZSignalBay(std::string_view name, ZLooper* looper)
    : ZBay(name, looper)
{
}

ZSignalBay::ZSignalBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZBay(xml, application)
{
    const std::int32_t count = xml->GetChildCount("publish");
    for (std::int32_t i = 0; i < count; ++i)
        Publish(*xml->GetChild("publish", i));
}

ZSignalBay::~ZSignalBay()
{
    TearDown();
}

bool ZSignalBay::IsKindOf(std::string_view className) const
{
    return className == "ZSignalBayClass" || ZBay::IsKindOf(className);
}

const char* ZSignalBay::GetClassName() const
{
    return "ZSignalBayClass";
}

void ZSignalBay::Publish(const ZXMLElement& xml)
{
    const auto bay = FindBay(xml.GetAttributeOr("bay", ""));
    if (!bay)
        return;
    const std::int32_t importIndex = xml.GetInt32("import");
    if (importIndex >= 0) {
        if (const auto port = bay->ShareImport(importIndex))
            AddImport(port);
    } else if (const auto port = bay->ShareExport(xml.GetInt32("export"))) {
        AddExport(port);
    }
}

std::int32_t ZSignalBay::ReadChannelCount(const ZXMLElement& xml, std::int32_t max)
{
    const std::int32_t count = xml.GetInt32("numchannels");
    if (count >= 1 && count <= max)
        return count;
    throw ZException("Bay '" + std::string(xml.GetAttributeOr("name", "")) +
                     "' needs numchannels from 1 to " + std::to_string(max) + ".");
}

void ZSignalBay::CheckChannelCount(std::int32_t count) const
{
    if (count < 0 || count > kMaxChannels)
        throw ZException("Bay '" + GetName() + "' has from 0 to " + std::to_string(kMaxChannels) +
                         " channels, not " + std::to_string(count) + ".");
}

boost::shared_ptr<ZBay> ZSignalBay::Clone()
{
    auto copy = boost::make_shared<ZSignalBay>(GetName(), GetLooper());
    CopySettingsTo(*copy);
    CopyInto(*copy);
    return copy;
}

void ZSignalBay::CopySettingsTo(ZSignalBay& copy)
{
    copy.SetLooper(GetLooper());
    copy.mSampleRate = mSampleRate;
    copy.mLatency = mLatency;
    copy.SetMaxBuffer(mMaxBuffer);
}

// Messages and settings

void ZSignalBay::HandleZMessage(boost::shared_ptr<const ZMessage> message)
{
    switch (message->GetId()) {
    case ZMAXBUFFERCHANGED: {
        std::int32_t samples = 0;
        if (message->Find<std::int32_t>("maxbuf", samples)) {
            SetMaxBuffer(samples);
            Prepare();
        }
        return;
    }
    case ZSAMPLERATECHANGED: {
        float rate = 0.0f;
        if (message->Find<float>("rate", rate) && std::isfinite(rate) && rate > 0.0f) {
            mSampleRate = rate;
            SampleRateChanged();
        }
        return BroadcastToBays(message);
    }
    case ZSETDEFAULTS:
        return SetDefaults();
    case ZRESET:
        return Reset();
    default:
        return;
    }
}

void ZSignalBay::BroadcastToBays(const boost::shared_ptr<const ZMessage>& message)
{
    for (const auto& bay : CopyBays())
        bay->HandleZMessage(message);
}

void ZSignalBay::SetInputChannelCount(std::int32_t /*count*/)
{
    throw ZException("SetInputChannelCount not implemented in ZSignalBay, should be overridden!");
}

void ZSignalBay::SetOutputChannelCount(std::int32_t /*count*/)
{
    throw ZException("SetOutputChannelCount not implemented in ZSignalBay, should be overridden!");
}

std::int32_t ZSignalBay::GetInputChannelCount() const
{
    return mAudioImports.Count();
}

std::int32_t ZSignalBay::GetOutputChannelCount() const
{
    return mAudioExports.Count();
}

void ZSignalBay::SampleRateChanged()
{
}

void ZSignalBay::MaxBufferChanged()
{
    assert(!IsPassRunning());
    for (ZSignalPort* const port : mSignalImports)
        port->AllocateBuffer();
    for (ZSignalPort* const port : mSignalExports)
        port->AllocateBuffer();
}

void ZSignalBay::SetDefaults()
{
    for (const auto& bay : SignalBays())
        bay->SetDefaults();
}

bool ZSignalBay::Prepare()
{
    assert(!IsPassRunning());
    if (!mProcessingLock)
        mProcessingLock = std::make_unique<ZLock>("processing lock");
    for (const auto& bay : SignalBays())
        bay->Prepare();
    return true;
}

void ZSignalBay::Reset()
{
    assert(!IsPassRunning());
    for (const auto& bay : SignalBays())
        bay->Reset();
}

void ZSignalBay::SetMaxBuffer(std::int32_t samples)
{
    if (samples <= 0)
        throw ZException("A pass of bay '" + GetName() + "' takes 1 sample at least, not " +
                         std::to_string(samples) + ".");
    mMaxBuffer = samples;
    for (const auto& bay : SignalBays())
        bay->SetMaxBuffer(samples);
    MaxBufferChanged();
}

void ZSignalBay::SetLatency(std::int32_t samples)
{
    assert(samples >= 0);
    mLatency = samples;
}

std::int32_t ZSignalBay::GetLatency() const
{
    if (GetBayCount() == 0)
        return mLatency;
    std::int32_t sum = 0;
    for (const auto& bay : SignalBays())
        sum += bay->GetLatency();
    return sum;
}

boost::shared_ptr<ZXMLElement> ZSignalBay::ExtractPresetHeader(std::string_view name) const
{
    auto xml = boost::make_shared<ZXMLElement>("preset");
    xml->AddAttribute("name", name);
    return xml;
}

std::vector<boost::shared_ptr<ZSignalBay>> ZSignalBay::SignalBays() const
{
    std::vector<boost::shared_ptr<ZSignalBay>> bays;
    for (const auto& bay : CopyBays())
        if (auto signalBay = boost::dynamic_pointer_cast<ZSignalBay>(bay))
            bays.push_back(std::move(signalBay));
    return bays;
}

// Ports

void ZSignalBay::MakeImport(std::string_view name, ZPort::Type type)
{
    AddImport(boost::make_shared<ZSignalPort>(name, type));
}

void ZSignalBay::MakeExport(std::string_view name, ZPort::Type type)
{
    AddExport(boost::make_shared<ZSignalPort>(name, type));
}

void ZSignalBay::ImportAdded(ZPort& port)
{
    EnterPort(port, mAudioImports, mControlImports, mSignalImports);
}

void ZSignalBay::ExportAdded(ZPort& port)
{
    EnterPort(port, mAudioExports, mControlExports, mSignalExports);
}

void ZSignalBay::ImportRemoved(ZPort& port)
{
    LeavePort(port, mAudioImports, mControlImports, mSignalImports);
}

void ZSignalBay::ExportRemoved(ZPort& port)
{
    LeavePort(port, mAudioExports, mControlExports, mSignalExports);
}

void ZSignalBay::EnterPort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                           ZLockedList<ZSignalPort*>& control, std::vector<ZSignalPort*>& own)
{
    assert(!IsPassRunning());
    auto* const signalPort = dynamic_cast<ZSignalPort*>(&port);
    if (!signalPort)
        return;
    if (port.GetType() == ZPort::kAudio)
        audio.Append(signalPort);
    else if (port.GetType() == ZPort::kControl)
        control.Append(signalPort);
    if (port.GetOwner() != this)
        return;
    signalPort->mSignalOwner = this;
    if (!signalPort->GetBuffer())
        signalPort->AllocateBuffer();
    own.push_back(signalPort);
}

void ZSignalBay::LeavePort(ZPort& port, ZLockedList<ZSignalPort*>& audio,
                           ZLockedList<ZSignalPort*>& control, std::vector<ZSignalPort*>& own)
{
    assert(!IsPassRunning());
    auto* const signalPort = dynamic_cast<ZSignalPort*>(&port);
    if (!signalPort)
        return;
    if (port.GetType() == ZPort::kAudio)
        audio.Remove(signalPort);
    else if (port.GetType() == ZPort::kControl)
        control.Remove(signalPort);
    if (signalPort->mSignalOwner == this && !port.GetOwner())
        signalPort->mSignalOwner = nullptr;
    std::erase(own, signalPort);
}

// Routes and demand

ZSignalBay* ZSignalBay::GetSink()
{
    if (!mActive)
        return nullptr;
    if (mIsSink)
        return this;
    for (ZBay* const bay : DownstreamBays(true, true)) {
        auto* const signalBay = dynamic_cast<ZSignalBay*>(bay);
        if (signalBay && signalBay->mIsSink)
            return signalBay;
    }
    return nullptr;
}

bool ZSignalBay::IsPassRunning()
{
    const ZSignalBay* const sink = GetSink();
    return sink && sink->mPassRuns.load(std::memory_order_relaxed);
}

std::unique_lock<ZLock> ZSignalBay::LockSink()
{
    const ZSignalBay* const sink = GetSink();
    if (!sink || !sink->mProcessingLock)
        return {};
    return std::unique_lock(*sink->mProcessingLock);
}

void ZSignalBay::Route(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex)
{
    assert(!IsPassRunning());
    const auto lock = LockSink();
    ZBay::Route(importIndex, farBay, exportIndex);
}

void ZSignalBay::Unroute(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex)
{
    assert(!IsPassRunning());
    const auto lock = LockSink();
    ZBay::Unroute(importIndex, farBay, exportIndex);
}

void ZSignalBay::RouteAdded(std::int32_t importIndex, ZBay& /*farBay*/,
                            std::int32_t /*exportIndex*/)
{
    if (auto* const target = dynamic_cast<ZSignalBay*>(GetImport(importIndex)->GetOwner()))
        target->UpdateSources();
}

void ZSignalBay::RouteRemoved(std::int32_t importIndex, ZBay& farBay, std::int32_t exportIndex)
{
    const ZPort& importPort = *GetImport(importIndex);
    if (auto* const source = dynamic_cast<ZSignalBay*>(farBay.GetExport(exportIndex)->GetOwner()))
        source->ForgetRequester(importPort);
    if (auto* const target = dynamic_cast<ZSignalBay*>(importPort.GetOwner()))
        target->UpdateSources();
}

/// The bays that this one reads, each once, sorted by address.
std::vector<ZSignalBay*> ZSignalBay::Sources() const
{
    std::vector<ZSignalBay*> sigPrev;
    for (const ZSignalPort* const port : mSignalImports)
        if (port->GetSource())
            sigPrev.push_back(port->GetSource()->GetSignalOwner());
    std::sort(sigPrev.begin(), sigPrev.end(), std::less<>());
    sigPrev.erase(std::unique(sigPrev.begin(), sigPrev.end()), sigPrev.end());
    return sigPrev;
}

/// Updates the demand of the bays that this one reads, or no longer reads. An inactive bay demands
/// none. Compares bays, not routes, so that several routes from one bay count once.
void ZSignalBay::UpdateSources()
{
    std::vector<ZSignalBay*> before = mActive ? Sources() : std::vector<ZSignalBay*>();
    before.swap(mLiveSources);
    const auto onlyIn = [](const auto& bays, const auto& others) {
        std::vector<ZSignalBay*> rest;
        std::set_difference(bays.begin(), bays.end(), others.begin(), others.end(),
                            std::back_inserter(rest), std::less<>());
        return rest;
    };
    // New sources first, so that a bay that both need stays active.
    for (ZSignalBay* const bay : onlyIn(mLiveSources, before))
        bay->AddConsumer();
    for (ZSignalBay* const bay : onlyIn(before, mLiveSources))
        bay->RemoveConsumer();
}

void ZSignalBay::Activate()
{
    if (mActive)
        return;
    mActive = true;
    UpdateSources();
}

void ZSignalBay::Deactivate()
{
    mActive = false;
    UpdateSources();
}

void ZSignalBay::AddConsumer()
{
    if (mDemand == 0)
        Activate();
    ++mDemand;
}

void ZSignalBay::RemoveConsumer()
{
    assert(mDemand > 0);
    if (--mDemand == 0 && !mIsSink)
        Deactivate();
}

/// Forgets the request of an import that may be destroyed before the next Pull serves it.
void ZSignalBay::ForgetRequester(const ZPort& importPort)
{
    const auto end = mRequesters.begin() + mRequesterCount;
    const auto last = std::remove(mRequesters.begin(), end, &importPort);
    mRequesterCount = static_cast<std::int32_t>(last - mRequesters.begin());
}

// The pass

void ZSignalBay::SetRequested(std::uint32_t count) noexcept
{
    mRequested = std::min(count, static_cast<std::uint32_t>(mMaxBuffer));
}

void ZSignalBay::RunPass(std::uint32_t count) noexcept
{
    assert(!ZInterfaceLock::IsHeld());
    assert(!mPassRuns.load(std::memory_order_relaxed));
    mPassRuns.store(true, std::memory_order_relaxed);
    SetRequested(count);
    RequestInputs();
    Pull();
    mPassRuns.store(false, std::memory_order_relaxed);
}

void ZSignalBay::RequestInputs() noexcept
{
    for (ZSignalPort* const port : mSignalImports) {
        port->Prepare(mPosition, mRequested);
        ZSignalBay* const source = LiveSourceOf(*port);
        port->SetReady(!source);
        if (!source)
            continue;
        port->SetAvailable(0);
        source->RequestFrom(*port);
    }
}

/// The bay that the import reads; null when that bay is not active and so delivers nothing.
ZSignalBay* ZSignalBay::LiveSourceOf(const ZSignalPort& importPort) noexcept
{
    const ZSignalPort* const source = importPort.GetSource();
    return source && source->GetSignalOwner()->mActive ? source->GetSignalOwner() : nullptr;
}

void ZSignalBay::RequestFrom(ZSignalPort& importPort) noexcept
{
    if (!mActive)
        return;
    assert(importPort.GetSource() && importPort.GetSource()->GetSignalOwner() == this);
    const bool isFirst = !HasAsked(importPort.GetOwner());
    EnterRequester(importPort);
    TakePosition(importPort.GetPosition());
    // The largest request counts, limited to the length of the ports' buffers.
    SetRequested(std::max(mRequested, importPort.GetRequested()));
    if (isFirst && ++mConsumersHeard == mDemand)
        RequestInputs();
}

/// Enters each import once; the table has room for all imports that a bay may feed.
void ZSignalBay::EnterRequester(ZSignalPort& importPort) noexcept
{
    const auto end = mRequesters.begin() + mRequesterCount;
    if (std::find(mRequesters.begin(), end, &importPort) != end)
        return;
    assert(mRequesterCount < kMaxRequesters);
    mRequesters[static_cast<std::size_t>(mRequesterCount++)] = &importPort;
}

bool ZSignalBay::HasAsked(const ZBay* consumer) const noexcept
{
    const auto end = mRequesters.begin() + mRequesterCount;
    return std::any_of(mRequesters.begin(), end, [consumer](const ZSignalPort* port) {
        return port->GetOwner() == consumer;
    });
}

void ZSignalBay::TakePosition(std::uint64_t position) noexcept
{
    if (mPositionReset) {
        mPositionReset = false;
        mPositionOffset = position - mResetPosition;
    }
    mPosition = position - mPositionOffset;
}

void ZSignalBay::Pull() noexcept
{
    const std::uint32_t minimumAudio = PullImports();
    assert(minimumAudio <= static_cast<std::uint32_t>(mMaxBuffer));
    ProcessSignal(mPosition, minimumAudio, 0, GetExportCount());
    mRequested = 0;
    ServeRequesters();
}

/// Runs the sources and gives back how many samples all audio imports have.
std::uint32_t ZSignalBay::PullImports() noexcept
{
    std::uint32_t minimumAudio = mRequested;
    for (ZSignalPort* const port : mSignalImports) {
        ZSignalBay* const source = LiveSourceOf(*port);
        if (source && !port->IsReady())
            source->Pull();
        port->SetAvailable(source ? port->GetSource()->GetAvailable() : 0);
        if (port->GetType() == ZPort::kAudio)
            minimumAudio = std::min(minimumAudio, port->GetAvailable());
    }
    return minimumAudio;
}

/// Makes the imports that asked read the exports' buffers, and ready, so that they do not run this
/// bay again in this pass.
void ZSignalBay::ServeRequesters() noexcept
{
    for (std::int32_t i = 0; i < mRequesterCount; ++i) {
        ZSignalPort& importPort = *mRequesters[static_cast<std::size_t>(i)];
        if (const ZSignalPort* const source = importPort.GetSource())
            importPort.SetBuffer(source->GetBuffer());
        importPort.SetReady(true);
    }
    mRequesterCount = 0;
    mConsumersHeard = 0;
}

void ZSignalBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t /*count*/,
                               std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
}

void ZSignalBay::PullRange(std::uint64_t from, std::uint64_t to)
{
    std::uint64_t position = from;
    while (position < to && !mSignalImports.empty()) {
        mPosition = position;
        SetRequested(static_cast<std::uint32_t>(
            std::min<std::uint64_t>(to - position, static_cast<std::uint64_t>(mMaxBuffer))));
        RequestInputs();
        Pull();
        const std::uint32_t delivered = mSignalImports.back()->GetAvailable();
        if (delivered == 0)
            return;
        position += delivered;
    }
}

void ZSignalBay::SetPosition(std::uint64_t position, bool propagate)
{
    mPosition = position;
    mResetPosition = position;
    mPositionReset = true;
    mPositionOffset = 0;
    if (!propagate)
        return;
    for (ZBay* const bay : UpstreamBays(true, true))
        if (auto* const signalBay = dynamic_cast<ZSignalBay*>(bay))
            signalBay->mPositionOffset = 0;
}

std::uint64_t ZSignalBay::GetPosition() const
{
    return mPosition;
}

boost::shared_ptr<const ZMessage> makeSampleRateMessage(float rate)
{
    assert(rate > 0.0f);
    auto message = boost::make_shared<ZMessage>(ZSAMPLERATECHANGED);
    message->Add<float>("rate", rate);
    return message;
}

}  // namespace orvane

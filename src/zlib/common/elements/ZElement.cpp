// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZElement.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZLooper.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>

namespace orvane
{

namespace
{

// Each value is independent of the others; the release and acquire of the mark order them.
constexpr auto kRelaxed = std::memory_order_relaxed;

boost::shared_ptr<const ZMessage> makeMessage(std::int32_t id, const ZElement* element)
{
    auto message = boost::make_shared<ZMessage>(id);
    message->Add<std::uint64_t>("elementid", elementIdOf(element));
    return message;
}

void post(const boost::shared_ptr<const ZMessage>& message, ZHandler* observer)
{
    ZLooper* const looper = observer->GetLooper();
    if (looper && !looper->IsElementChangePending(*message, observer))
        looper->PostZMessage(message, observer);
}

}  // namespace

void ZElement::SharedRange::Store(const ZRange& range) noexcept
{
    mStart.store(range.mStart, kRelaxed);
    mLength.store(range.mLength, kRelaxed);
}

ZRange ZElement::SharedRange::Load() const noexcept
{
    return {mStart.load(kRelaxed), mLength.load(kRelaxed)};
}

ZElement::ZElement(std::string_view name, Type type, ZLooper* looper, std::uint32_t bufferLength)
    : ZHandler(name, looper)
    , mType(type)
{
    if (type == ZBUFFER)
        mBuffer = std::make_unique<ZBuffer>(bufferLength, "ElementBuffer");
}

ZElement::~ZElement()
{
    for (const auto& child : mSubElements)
        child->mContainer = nullptr;
}

bool ZElement::IsKindOf(std::string_view className) const
{
    return className == "ZElementClass" || ZHandler::IsKindOf(className);
}

const char* ZElement::GetClassName() const
{
    return "ZElementClass";
}

void ZElement::RequireType(Type type, const char* failure) const
{
    if (mType != type)
        throw ZException(failure);
}

ZString ZElement::GetLabelToFit(std::int32_t maxLength) const
{
    ZString text(GetName());
    for (auto label = mLabels.begin(); text.Length() > maxLength && label != mLabels.end(); ++label)
        text = label->second;
    return text;
}

ZString ZElement::GetLabel(std::int32_t kind) const
{
    const auto label = mLabels.find(kind);
    return label != mLabels.end() ? label->second : ZString(GetName());
}

void ZElement::SetLabel(std::int32_t kind, const ZString& text)
{
    assert(ZInterfaceLock::IsHeld());
    mLabels[kind] = text;
}

void ZElement::ClearLabels()
{
    assert(ZInterfaceLock::IsHeld());
    mLabels.clear();
}

ZElement::Units ZElement::GetUnits() const
{
    return mUnits;
}

bool ZElement::IsMarkedChanged() const
{
    return (mChanged.load(kRelaxed) & kChanged) != 0;
}

void ZElement::ClearMarkedChanged()
{
    mChanged.store(0, kRelaxed);
}

void ZElement::GetValue(float& /*out*/) const
{
    throw ZException("This element doesn't have GetValue()");
}

void ZElement::GetValue(ZString& /*out*/) const
{
    throw ZException("This element doesn't have GetValue()");
}

std::int32_t ZElement::CountDiscreteValues() const
{
    RequireType(ZDISCRETE, "CountDiscreteValues() called on a non discrete element.");
    return mDiscreteList.Count();
}

boost::shared_ptr<ZString> ZElement::GetDiscreteString(std::int32_t index) const
{
    RequireType(ZDISCRETE, "GetDiscreteString() called on a non discrete element.");
    boost::shared_ptr<const DiscreteItem> item;
    return boost::make_shared<ZString>(mDiscreteList.Get(index, item) ? item->GetText()
                                                                      : ZString());
}

std::int32_t ZElement::AppendItem(boost::shared_ptr<const DiscreteItem> item)
{
    assert(item);
    mDiscreteList.Append(std::move(item));
    const std::int32_t index = mDiscreteList.Count() - 1;
    DiscreteListChanged(nullptr);
    return index;
}

std::int32_t ZElement::AddDiscreteValue(const char* text)
{
    return AddDiscreteValue(ZString(text));
}

std::int32_t ZElement::AddDiscreteValue(const ZString& text)
{
    RequireType(ZDISCRETE, "AddDiscreteValue() called on a non discrete element.");
    return AppendItem(boost::make_shared<DiscreteItem>(text));
}

std::int32_t ZElement::AddDiscreteValue(const boost::shared_ptr<const ZXMLElement>& xml)
{
    RequireType(ZDISCRETE, "AddDiscreteValue() called on a non discrete element.");
    return AppendItem(boost::make_shared<DiscreteItem>(ZString(xml->GetAttribute("name")), xml));
}

void ZElement::ReplaceDiscreteValues(const std::vector<ZString>& texts)
{
    RequireType(ZDISCRETE, "AddDiscreteValue() called on a non discrete element.");
    std::vector<boost::shared_ptr<const DiscreteItem>> items;
    items.reserve(texts.size());
    for (const ZString& text : texts)
        items.push_back(boost::make_shared<DiscreteItem>(text));
    mDiscreteList.Replace(std::move(items));
    DiscreteListChanged(nullptr);
}

void ZElement::RemoveDiscreteValues(bool quiet)
{
    RequireType(ZDISCRETE, "RemoveDiscreteValues() called on a non discrete element.");
    mDiscreteList.Replace({});
    DiscreteListChanged(nullptr);
    if (!quiet)
        ElementChanged(nullptr, true);
}

void ZElement::SetDiscrete(std::int32_t index, bool quiet)
{
    RequireType(ZDISCRETE, "SetDiscrete() called on a non discrete element.");
    mDiscreteValue.store(index, kRelaxed);
    if (!quiet)
        ElementChanged(nullptr, true);
}

std::int32_t ZElement::GetDiscrete() const
{
    RequireType(ZDISCRETE, "GetDiscrete() called on a non discrete element.");
    return mDiscreteValue.load(kRelaxed);
}

void ZElement::SetDiscreteDefault(std::int32_t index)
{
    RequireType(ZDISCRETE, "SetDiscreteDefault() called on a non discrete element.");
    mDiscreteDefault.store(index, kRelaxed);
}

std::int32_t ZElement::GetDiscreteDefault() const
{
    RequireType(ZDISCRETE, "GetDiscrete() called on a non discrete element.");
    return mDiscreteDefault.load(kRelaxed);
}

void ZElement::SetZFloat(float value, bool quiet)
{
    RequireType(ZFLOAT, "SetZFloat() called on a non float element.");
    mFloatValue.store(value, kRelaxed);
    if (!quiet)
        ElementChanged(nullptr, true);
}

void ZElement::SetZFloatClamped(float value, bool quiet)
{
    RequireType(ZFLOAT, "SetZFloat() called on a non float element.");
    // NaN becomes Min(): std::min(NaN, Max()) is NaN, and std::max(Min(), NaN) is Min().
    const float clamped = std::max(Min(), std::min(value, Max()));
    if (clamped != GetZFloat())
        SetZFloat(clamped, quiet);
}

float ZElement::GetZFloat() const
{
    RequireType(ZFLOAT, "GetZFloat() called on a non float element.");
    return mFloatValue.load(kRelaxed);
}

void ZElement::SetZFloatDefault(float value)
{
    RequireType(ZFLOAT, "SetZFloatDefault() called on a non float element.");
    mFloatDefault.store(value, kRelaxed);
}

float ZElement::GetZFloatDefault() const
{
    RequireType(ZFLOAT, "GetZFloatDefault() called on a non float element.");
    return mFloatDefault.load(kRelaxed);
}

void ZElement::SetRange(float min, float max, bool quiet)
{
    RequireType(ZFLOAT, "SetRange() called on a non float element.");
    mMin.store(min, kRelaxed);
    mMax.store(max, kRelaxed);
    if (!quiet)
        ElementUpdated(nullptr);
}

float ZElement::Range() const
{
    RequireType(ZFLOAT, "Range() called on a non float element.");
    return mMax.load(kRelaxed) - mMin.load(kRelaxed);
}

float ZElement::Min() const
{
    RequireType(ZFLOAT, "Min() called on a non float element.");
    return mMin.load(kRelaxed);
}

float ZElement::Max() const
{
    RequireType(ZFLOAT, "Max() called on a non float element.");
    return mMax.load(kRelaxed);
}

void ZElement::SetZRange(const ZRange& range)
{
    RequireType(ZRANGE, "SetZRange() called on a non ZRange element.");
    mRange.Store(range);
    ElementChanged(nullptr, true);
}

ZRange ZElement::GetZRange() const
{
    RequireType(ZRANGE, "GetZRange() called on a non zpos element.");
    return mRange.Load();
}

void ZElement::SetZRangeLimit(const ZRange& range)
{
    RequireType(ZRANGE, "SetZRangeLimit() called on a non ZRange element.");
    mRangeLimit.Store(range);
    ElementChanged(nullptr, true);
}

ZRange ZElement::GetZRangeLimit() const
{
    RequireType(ZRANGE, "GetZRange() called on a non zpos element.");
    return mRangeLimit.Load();
}

void ZElement::SetZPos(std::int64_t value)
{
    RequireType(ZPOS, "SetZPos() called on a non zpos element.");
    mPosValue.store(value, kRelaxed);
    ElementChanged(nullptr, true);
}

std::int64_t ZElement::GetZPos() const
{
    RequireType(ZPOS, "GetZPos() called on a non zpos element.");
    return mPosValue.load(kRelaxed);
}

void ZElement::SetZBuffer(const ZBuffer& buffer, bool quiet)
{
    RequireType(ZBUFFER, "SetZBuffer() called on a non buffer element.");
    if (&buffer != mBuffer.get())
        StoreSamples(buffer);
    if (!quiet)
        ElementChanged(nullptr, true);
}

void ZElement::StoreSamples(const ZBuffer& buffer)
{
    assert(mBuffer);
    const std::uint32_t count = std::min(mBuffer->Length(), buffer.Length());
    for (std::uint32_t i = 0; i < count; ++i)
        std::atomic_ref(mBuffer->Data()[i]).store(buffer.Data()[i], kRelaxed);
}

std::unique_ptr<ZBuffer> ZElement::CopySamples() const
{
    auto copy = std::make_unique<ZBuffer>(mBuffer->Length(), mBuffer->Name());
    copy->SetSampleRate(mBuffer->SampleRate());
    for (std::uint32_t i = 0; i < copy->Length(); ++i)
        copy->Data()[i] = std::atomic_ref(mBuffer->Data()[i]).load(kRelaxed);
    return copy;
}

ZBuffer* ZElement::GetZBuffer()
{
    RequireType(ZBUFFER, "GetZBuffer() called on a non buffer element.");
    return mBuffer.get();
}

const ZBuffer* ZElement::GetZBuffer() const
{
    RequireType(ZBUFFER, "GetZBuffer() called on a non buffer element.");
    return mBuffer.get();
}

void ZElement::SetZBufferRange(float min, float max)
{
    RequireType(ZBUFFER, "SetZBufferRange() called on a non buffer element.");
    mBufferMin.store(min, kRelaxed);
    mBufferMax.store(max, kRelaxed);
    ElementUpdated(nullptr);
}

float ZElement::ZBufferMin() const
{
    RequireType(ZBUFFER, "ZBufferMin() called on a non buffer element.");
    return mBufferMin.load(kRelaxed);
}

float ZElement::ZBufferMax() const
{
    RequireType(ZBUFFER, "ZBufferMax() called on a non buffer element.");
    return mBufferMax.load(kRelaxed);
}

std::int32_t ZElement::GetSubElementCount() const
{
    return static_cast<std::int32_t>(mSubElements.size());
}

bool ZElement::GetSubElement(std::int32_t index, boost::shared_ptr<ZElement>& out) const
{
    if (index < 0 || index >= GetSubElementCount())
        return false;
    out = mSubElements[static_cast<std::size_t>(index)];
    return true;
}

bool ZElement::FindSubElement(std::string_view name, boost::shared_ptr<ZElement>& out) const
{
    for (const auto& child : mSubElements) {
        if (child->GetName() == name) {
            out = child;
            return true;
        }
        if (child->FindSubElement(name, out))
            return true;
    }
    return false;
}

void ZElement::AddSubElement(const boost::shared_ptr<ZElement>& child)
{
    assert(ZInterfaceLock::IsHeld());
    assert(child && child.get() != this);
    if (child->mContainer)
        return;
    mSubElements.push_back(child);
    child->mContainer = this;
    DiscreteListChanged(nullptr);
}

void ZElement::ElementChanged(const ZHandler* sender, bool deferred)
{
    if (deferred)
        mChanged.fetch_or(kChanged | kHostUnaware, std::memory_order_release);
    else
        Notify(ZELEMENTCHANGED, sender);
}

void ZElement::ElementUpdated(const ZHandler* sender)
{
    ElementChanged(sender, true);
    Notify(ZELEMENTUPDATED, sender);
}

void ZElement::DiscreteListChanged(const ZHandler* sender)
{
    BringIntoList(mDiscreteValue);
    BringIntoList(mDiscreteDefault);
    Notify(ZELEMENTUPDATED, sender);
}

/// Clamps the index, unless another thread stores a new one meanwhile.
void ZElement::BringIntoList(std::atomic<std::int32_t>& index) const
{
    const std::int32_t last = std::max(mDiscreteList.Count() - 1, 0);
    std::int32_t given = index.load(kRelaxed);
    const std::int32_t clamped = std::clamp(given, 0, last);
    if (clamped != given)
        index.compare_exchange_strong(given, clamped, kRelaxed);
}

void ZElement::Notify(std::int32_t messageId, const ZHandler* sender)
{
    assert(ZInterfaceLock::IsHeld());
    if (!mObservers.empty())
        NotifyObservers(makeMessage(messageId, this), sender);
}

void ZElement::NotifyObservers(const boost::shared_ptr<const ZMessage>& message,
                               const ZHandler* sender)
{
    assert(ZInterfaceLock::IsHeld());
    assert(message);
    // By index, because posting a message may add or remove observers.
    for (std::size_t i = 0; i < mObservers.size(); ++i)
        if (ZHandler* const observer = mObservers[i]; observer != sender)
            post(message, observer);
}

void ZElement::AddObserver(ZHandler* observer)
{
    assert(ZInterfaceLock::IsHeld());
    if (!observer)
        return;
    mObservers.push_back(observer);
    post(makeMessage(ZATTACHEDTOELEMENT, this), observer);
}

void ZElement::RemoveObserver(const ZHandler* observer)
{
    assert(ZInterfaceLock::IsHeld());
    std::erase(mObservers, observer);
}

std::int32_t ZElement::GetObserverCount() const
{
    return static_cast<std::int32_t>(mObservers.size());
}

ZHandler* ZElement::GetObserver(std::int32_t index) const
{
    if (index < 0 || index >= GetObserverCount())
        return nullptr;
    return mObservers[static_cast<std::size_t>(index)];
}

void ZElement::MarkChangedByHost()
{
    // An exchange, not a store, keeps the values of earlier marks visible to the flush.
    mChanged.exchange(kChanged, std::memory_order_acq_rel);
}

bool ZElement::ClaimHostNotification()
{
    std::uint8_t mark = kChanged | kHostUnaware;
    return mChanged.compare_exchange_strong(mark, kChanged, std::memory_order_acq_rel);
}

void ZElement::FlushMark(const ZHandler* application)
{
    if ((mChanged.load(kRelaxed) & kChanged) == 0)
        return;
    const std::uint8_t mark = mChanged.exchange(0, std::memory_order_acq_rel);
    ElementChanged((mark & kHostUnaware) != 0 ? nullptr : application, false);
}

// By index, because an observer may add elements when it is notified.
void ZElement::FlushMarksBelow(const ZHandler* application) const
{
    for (std::size_t i = 0; i < mSubElements.size(); ++i) {
        ZElement& child = *mSubElements[i];
        if (child.mSubElements.empty())
            child.FlushMark(application);
        else
            child.FlushMarksBelow(application);
    }
}

}  // namespace orvane

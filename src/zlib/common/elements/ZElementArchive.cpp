// SPDX-License-Identifier: GPL-3.0-or-later
// The archive of an element: reading, writing and restoring its XML.

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZBufferArchive.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

// The index of a word is the number of its type, unit or label kind.
constexpr std::array<std::string_view, 7> kTypeWords = {
    "ZGROUP", "ZMESSAGE", "ZDISCRETE", "ZFLOAT", "ZPOS", "ZBUFFER", "ZRANGE",
};
constexpr std::array<std::string_view, 11> kUnitsWords = {
    "Generic", "Percent", "Seconds",  "SampleFrames", "Phase",        "Rate",
    "Hertz",   "Cents",   "Decibels", "LinearGain",   "Milliseconds",
};
constexpr std::array<std::string_view, 3> kLabelWords = {"full", "medium", "short"};

/// The index of the attribute's value among the words, words.size() for an unknown value. A missing
/// attribute counts as the first word.
std::int32_t indexOfWord(const ZXMLElement& xml, std::string_view attribute,
                         std::span<const std::string_view> words)
{
    const char* const word = xml.GetAttribute(attribute);
    if (!word)
        return 0;
    const auto found = std::find(words.begin(), words.end(), word);
    return static_cast<std::int32_t>(std::distance(words.begin(), found));
}

ZElement::Type readType(const ZXMLElement& xml)
{
    const std::int32_t index = indexOfWord(xml, "type", kTypeWords);
    if (index == std::ssize(kTypeWords))
        throw ZException("Unrecognized Element Type.");
    return static_cast<ZElement::Type>(index);
}

ZElement::Units readUnits(const ZXMLElement& xml)
{
    const std::int32_t index = indexOfWord(xml, "units", kUnitsWords);
    if (index == std::ssize(kUnitsWords))
        throw ZException("Unrecognized Units Type.");
    return static_cast<ZElement::Units>(index);
}

std::int32_t readLabelKind(const ZXMLElement& label)
{
    const std::int32_t index = indexOfWord(label, "type", kLabelWords);
    return index == std::ssize(kLabelWords) ? ZElement::kFullLabel : index;
}

void readNumber(const ZXMLElement& xml, std::string_view attribute, std::atomic<float>& out)
{
    if (xml.HasAttribute(attribute))
        out.store(xml.GetFloat(attribute), std::memory_order_relaxed);
}

void readNumber(const ZXMLElement& xml, std::string_view attribute, std::atomic<std::int32_t>& out)
{
    if (xml.HasAttribute(attribute))
        out.store(xml.GetInt32(attribute), std::memory_order_relaxed);
}

void readNumber(const ZXMLElement& xml, std::string_view attribute, std::atomic<std::int64_t>& out)
{
    if (xml.HasAttribute(attribute))
        out.store(xml.GetInt64(attribute), std::memory_order_relaxed);
}

bool hasRange(const ZXMLElement& xml, std::string_view start, std::string_view end)
{
    return xml.HasAttribute(start) && xml.HasAttribute(end);
}

ZRange readRange(const ZXMLElement& xml, std::string_view start, std::string_view end)
{
    return ZRange::Between(xml.GetInt64(start), xml.GetInt64(end));
}

void writeRange(ZXMLElement& xml, std::string_view start, std::string_view end, const ZRange& range)
{
    xml.AddAttribute(start, range.mStart);
    xml.AddAttribute(end, range.mStart + range.mLength - 1);
}

}  // namespace

ZElement::ZElement(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mType(ZGROUP)
{
    ReadLabels(*xml);
    mArchivable = xml->GetAttributeBool("archivable");
    mExposed = xml->GetAttributeBool("exposed");
    mType = readType(*xml);
    mUnits = readUnits(*xml);
    ReadValue(*xml);
}

void ZElement::ReadLabels(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("label");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto label = xml.GetChild("label", i);
        ZString text(label->GetAttribute("text"));
        ZApplication* const application = GetApp();
        if (application && label->HasAttribute("key"))
            application->GetResourceString(label->GetInt32("key"), text);
        mLabels[readLabelKind(*label)] = text;
    }
}

void ZElement::ReadValue(const ZXMLElement& xml)
{
    switch (mType) {
    case ZGROUP:
        if (const auto list = xml.GetChild("subelements"))
            AddChildElements(*list);
        return;
    case ZMESSAGE:
        return;
    case ZDISCRETE:
        return ReadDiscrete(xml);
    case ZFLOAT:
        return ReadFloat(xml);
    case ZPOS:
        return readNumber(xml, "int64value", mPosValue);
    case ZBUFFER:
        return ReadBuffer(xml);
    case ZRANGE:
        return ReadRanges(xml);
    }
    throw ZException("Unknown element type!");
}

void ZElement::AddChildElements(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("element");
    for (std::int32_t i = 0; i < count; ++i)
        AddSubElement(MakeChild(xml.GetChild("element", i)));
}

boost::shared_ptr<ZElement> ZElement::MakeChild(const boost::shared_ptr<ZXMLElement>& xml)
{
    const std::string name = xml->GetAttributeOr("name", "");
    const std::string className = xml->GetAttributeOr("class", "");
    ZTrace::Write("Element (" + GetName() + "): Adding " + className + " instance named '" + name +
                  "' ");
    ZApplication* const application = GetApp();
    if (!application)
        throw ZException("An element needs an application to make its children.");
    const auto object = application->GetClassRegistry().Create(className, xml);
    const auto child = boost::dynamic_pointer_cast<ZElement>(object);
    if (!child)
        throw ZException("ERROR (ZElement::AddChildElements) '" + className + "' class (name='" +
                         name + "') found in XML, unable to make instance!\n");
    return child;
}

void ZElement::ReadDiscrete(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("discrete");
    for (std::int32_t i = 0; i < count; ++i)
        AddDiscreteValue(xml.GetChild("discrete", i));
    readNumber(xml, "int32value", mDiscreteValue);
    readNumber(xml, "int32default", mDiscreteDefault);
}

void ZElement::ReadFloat(const ZXMLElement& xml)
{
    readNumber(xml, "floatvalue", mFloatValue);
    readNumber(xml, "floatdefault", mFloatDefault);
    readNumber(xml, "min", mMin);
    readNumber(xml, "max", mMax);
}

void ZElement::ReadBuffer(const ZXMLElement& xml)
{
    readNumber(xml, "buffermin", mBufferMin);
    readNumber(xml, "buffermax", mBufferMax);
    const auto buffer = xml.GetChild("buffer");
    if (!buffer)
        throw ZException("Error Trying to create a buffer of improper size.");
    mBuffer = makeBuffer(*buffer);
}

void ZElement::ReadRanges(const ZXMLElement& xml)
{
    if (hasRange(xml, "rangeStart", "rangeEnd"))
        mRange.Store(readRange(xml, "rangeStart", "rangeEnd"));
    if (hasRange(xml, "rangeMin", "rangeMax"))
        mRangeLimit.Store(readRange(xml, "rangeMin", "rangeMax"));
}

boost::shared_ptr<ZXMLElement> ZElement::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("element");
    xml->AddAttribute("name", GetName());
    // Derived classes, too, are read back as plain elements.
    xml->AddAttribute("class", "ZElementClass");
    return xml;
}

void ZElement::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    if (mType < 0 || mType >= std::ssize(kTypeWords))
        throw ZException("Trying to extract a non XML specified type.");
    xml->AddAttribute("type", kTypeWords[static_cast<std::size_t>(mType)]);
    WriteValue(*xml);
}

void ZElement::WriteValue(ZXMLElement& xml) const
{
    switch (mType) {
    case ZGROUP:
        return WriteChildren(xml);
    case ZMESSAGE:
        return;
    case ZDISCRETE:
        return WriteDiscrete(xml);
    case ZFLOAT:
        return WriteFloat(xml);
    case ZPOS:
        return xml.AddAttribute("int64value", GetZPos());
    case ZBUFFER:
        return WriteBuffer(xml);
    case ZRANGE:
        return WriteRanges(xml);
    }
}

void ZElement::WriteChildren(ZXMLElement& xml) const
{
    ZXMLElement list("subelements");
    for (const auto& child : mSubElements)
        if (child->IsArchivedNow())
            list.AddChild(*child->ExtractXML());
    xml.AddChild(list);
}

void ZElement::WriteDiscrete(ZXMLElement& xml) const
{
    xml.AddAttribute("int32value", GetDiscrete());
    if (!mArchiveDiscreteList)
        return;
    std::int32_t index = 0;
    for (const auto& item : mDiscreteList.Copy()) {
        ZXMLElement discrete("discrete");
        discrete.AddAttribute("name", withoutMarkup(item->GetText().ToNarrow()));
        discrete.AddAttribute("value", index++);
        xml.AddChild(discrete);
    }
}

void ZElement::WriteFloat(ZXMLElement& xml) const
{
    xml.AddAttribute("floatvalue", GetZFloat());
    xml.AddAttribute("min", Min());
    xml.AddAttribute("max", Max());
}

void ZElement::WriteRanges(ZXMLElement& xml) const
{
    writeRange(xml, "rangeStart", "rangeEnd", GetZRange());
    writeRange(xml, "rangeMin", "rangeMax", GetZRangeLimit());
}

void ZElement::WriteBuffer(ZXMLElement& xml) const
{
    xml.AddAttribute("buffermin", ZBufferMin());
    xml.AddAttribute("buffermax", ZBufferMax());
    xml.AddChild(*extractBuffer(*CopySamples()));
}

void ZElement::RestoreBody(const boost::shared_ptr<ZXMLElement>& xml)
{
    if (!xml || !xml->AttributeIs("name", GetName()))
        return;
    RestoreValue(*xml);
    ElementChanged(this, false);
}

void ZElement::RestoreValue(const ZXMLElement& xml)
{
    switch (mType) {
    case ZGROUP:
        if (const auto list = xml.GetChild("subelements"))
            RestoreChildren(*list);
        return;
    case ZMESSAGE:
        return;
    case ZDISCRETE:
        return RestoreDiscrete(xml);
    case ZFLOAT:
        return readNumber(xml, "floatvalue", mFloatValue);
    case ZPOS:
        return readNumber(xml, "int64value", mPosValue);
    case ZBUFFER:
        return RestoreBuffer(xml);
    case ZRANGE:
        return ReadRanges(xml);
    }
}

void ZElement::RestoreChildren(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("element");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto childXml = xml.GetChild("element", i);
        boost::shared_ptr<ZElement> child;
        if (FindSubElement(childXml->GetAttributeOr("name", ""), child))
            child->RestoreBody(childXml);
    }
}

void ZElement::RestoreDiscrete(const ZXMLElement& xml)
{
    if (mArchiveDiscreteList) {
        std::vector<boost::shared_ptr<const DiscreteItem>> items;
        const std::int32_t count = xml.GetChildCount("discrete");
        for (std::int32_t i = 0; i < count; ++i) {
            const auto discrete = xml.GetChild("discrete", i);
            items.push_back(boost::make_shared<DiscreteItem>(
                ZString(discrete->GetAttribute("name")), discrete));
        }
        mDiscreteList.Replace(std::move(items));
    }
    readNumber(xml, "int32value", mDiscreteValue);
    DiscreteListChanged(this);
}

void ZElement::RestoreBuffer(const ZXMLElement& xml)
{
    const auto archived = xml.GetChild("buffer");
    if (!archived)
        return;
    // Decoded into a copy first, because another thread may be reading the element's buffer.
    const auto restored = CopySamples();
    restoreBuffer(*archived, *restored, ZBufferLength::kFixed);
    StoreSamples(*restored);
    mBuffer->SetName(restored->Name());
    mBuffer->SetSampleRate(restored->SampleRate());
}

}  // namespace orvane

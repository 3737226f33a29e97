// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZBufferArchive.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <string>
#include <string_view>

namespace orvane
{

namespace
{

constexpr std::uint32_t kDigitsPerSample = 8;

std::uint32_t readLength(const ZXMLElement& xml)
{
    return static_cast<std::uint32_t>(std::max(xml.GetInt32("length"), 0));
}

[[noreturn]] void throwMissingSamples()
{
    throw ZException("Buffer archive does not hold all samples of the buffer.");
}

/// Reads the other form of an archive: one attribute "i<index>" for each sample.
void readNumbers(const ZXMLElement& data, ZBuffer& buffer)
{
    for (std::uint32_t i = 0; i < buffer.Length(); ++i) {
        const std::string name = std::string("i").append(std::to_string(i));
        if (!data.HasAttribute(name))
            throwMissingSamples();
        buffer.Data()[i] = data.GetFloat(name);
    }
}

/// Checks that all samples are there before memory is allocated: a short archive may claim a length
/// of gigabytes.
void requireSamples(const ZXMLElement& data, std::uint32_t length)
{
    const char* const values = data.GetAttribute("values");
    const bool complete = values ? std::string_view(values).size() / kDigitsPerSample >= length
                                 : static_cast<std::uint32_t>(data.GetAttributeCount()) == length;
    if (!complete || length > maxArchivedSamples())
        throwMissingSamples();
}

void readSamples(const ZXMLElement& data, ZBuffer& buffer)
{
    const char* const values = data.GetAttribute("values");
    if (!values)
        return readNumbers(data, buffer);
    buffer.DecodeValues(std::string_view(values, buffer.Length() * kDigitsPerSample));
}

}  // namespace

std::uint32_t maxArchivedSamples()
{
    return (ZXMLTag::kAttributeValueSize - 1) / kDigitsPerSample;
}

boost::shared_ptr<ZXMLElement> extractBuffer(const ZBuffer& buffer)
{
    if (buffer.Length() > maxArchivedSamples())
        throw ZException("Buffer is too long for an archive.");
    auto xml = boost::make_shared<ZXMLElement>("buffer");
    xml->AddAttribute("name", buffer.Name());
    xml->AddAttribute("length", static_cast<std::int32_t>(buffer.Length()));
    xml->AddAttribute("samplerate", buffer.SampleRate());
    ZXMLElement data("data");
    data.AddAttribute("values", buffer.EncodeValues());
    xml->AddChild(data);
    return xml;
}

std::unique_ptr<ZBuffer> makeBuffer(const ZXMLElement& xml)
{
    const std::uint32_t length = readLength(xml);
    if (length == 0)
        throw ZException("Error Trying to create a buffer of improper size.");
    const auto data = xml.GetChild("data");
    if (!data)
        throwMissingSamples();
    requireSamples(*data, length);
    auto buffer = std::make_unique<ZBuffer>(length, xml.GetName().c_str());
    readSamples(*data, *buffer);
    buffer->SetSampleRate(xml.GetFloat("samplerate"));
    return buffer;
}

void restoreBuffer(const ZXMLElement& xml, ZBuffer& buffer, ZBufferLength length)
{
    const bool fits = readLength(xml) == buffer.Length();
    if (!fits && length == ZBufferLength::kFixed)
        throw ZException("Incompatible buffer restore. Buffers are of different size.");
    const auto archived = makeBuffer(xml);
    if (!fits)
        buffer.Resize(archived->Length());
    buffer.CopyFrom(*archived);
    buffer.SetName(archived->Name());
    buffer.SetSampleRate(archived->SampleRate());
}

}  // namespace orvane

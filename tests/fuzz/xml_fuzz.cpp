// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as XML, compares the result with the plain reader's, and calls every read
// function of its elements.

#include "FuzzFault.h"
#include "support/PlainXml.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/objects/ZXMLSignature.h"

namespace orvane
{

namespace
{

void require(bool condition, const char* fault)
{
    requireNoFault(condition ? "" : fault);
}

void readAttributes(const ZXMLElement& element)
{
    for (std::int32_t i = 0; i < element.GetAttributeCount(); ++i) {
        const char* const name = element.GetAttributeName(i);
        require(element.HasAttribute(name), "an attribute is not found by its own name");
        require(element.GetAttributeString(name) != nullptr, "an attribute gives no string");
        const double value = element.GetDouble(name);
        require(value - value == 0.0, "a number is not finite");
        static_cast<void>(element.GetInt8(name));
        static_cast<void>(element.GetUInt64(name));
    }
}

void readChildren(const ZXMLDocument& document)
{
    for (std::int32_t i = 0; i < document.GetChildCount(); ++i) {
        const auto child = document.GetChild(i);
        require(document.GetChildCount(child->GetName()) > 0, "a child is not found by its name");
        readAttributes(*child);
    }
    ZXMLElement copy("copy");
    if (const auto child = document.GetChild(0))
        copy.AddChild(*child, 1);
    static_cast<void>(copy.GetChildCount());
}

}  // namespace

}  // namespace orvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orvane;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto length = static_cast<std::int32_t>(size);
    requireNoFault(differenceFromPlain(text));
    readChildren(ZXMLDocument(text.data(), length));
    require(!VerifySignature(text.data(), length), "unsigned bytes have a valid signature");
    static_cast<void>(HasValidDeclaration(text.data(), length));
    return 0;
}

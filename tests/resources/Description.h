#pragma once

#include "resources/KestruneResources.h"
#include "zlib/common/ZResources.h"
#include "zlib/common/ZXMLDocument.h"
#include "zlib/common/ZXMLElement.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace orvane
{

/// The text of the packed description.
inline std::string_view descriptionText()
{
    return kestruneResources().FindText("XML", "kestrune_vst.xml").value();
}

inline ZXMLDocument description()
{
    const std::string_view text = descriptionText();
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// The first element on a way of names; an empty one, with the test failed, where none is.
inline ZXMLElement at(const ZXMLDocument& document, std::initializer_list<const char*> way)
{
    boost::shared_ptr<ZXMLElement> element;
    for (const char* name : way) {
        element = (element ? *element : document).GetChild(name);
        if (!element) {
            ADD_FAILURE() << "no " << name;
            return ZXMLElement();
        }
    }
    return *element;
}

inline std::vector<boost::shared_ptr<ZXMLElement>> childrenOf(const ZXMLDocument& document)
{
    std::vector<boost::shared_ptr<ZXMLElement>> children;
    for (std::int32_t i = 0; i < document.GetChildCount(); ++i)
        children.push_back(document.GetChild(i));
    return children;
}

/// The element's tag as the archive writes it, without its angle brackets.
inline std::string tagOf(const ZXMLElement& element)
{
    std::string tag = element.GetName();
    for (std::int32_t i = 0; i < element.GetAttributeCount(); ++i)
        tag += std::string(" ") + element.GetAttributeName(i) + "=" + element.GetAttributeValue(i);
    return tag;
}

/// The element and all below it, in order, each by its tag behind a blank a level.
inline std::string outlineOf(const ZXMLElement& element, int depth = 0)
{
    std::string outline(static_cast<std::size_t>(depth), ' ');
    outline += tagOf(element) + "\n";
    for (const auto& child : childrenOf(element))
        outline += outlineOf(*child, depth + 1);
    return outline;
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewTags.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace orvane
{

boost::shared_ptr<ZXMLElement> findTag(const ZXMLElement& view, std::string_view tag,
                                       std::string_view attribute, std::string_view value)
{
    boost::shared_ptr<ZXMLElement> found;
    for (std::int32_t i = 0; i < view.GetChildCount(tag); ++i) {
        const auto child = view.GetChild(tag, i);
        if (child->AttributeIs(attribute, value))
            found = child;
    }
    return found;
}

boost::shared_ptr<ZBitmap> readBitmap(const ZXMLElement& view, std::string_view type,
                                      ZApplication* application)
{
    const auto tag = findTag(view, "bitmap", "type", type);
    return tag ? boost::make_shared<ZBitmap>(*tag, application) : nullptr;
}

std::int32_t numberOr(const ZXMLElement& xml, std::string_view attribute, std::int32_t absent)
{
    return xml.HasAttribute(attribute) ? xml.GetInt32(attribute) : absent;
}

std::optional<std::int32_t> readWord(const ZXMLElement& xml, std::string_view attribute,
                                     std::span<const ZViewWord> words)
{
    const auto found = std::ranges::find_if(
        words, [&](const ZViewWord& word) { return xml.AttributeIs(attribute, word.word); });
    return found == words.end() ? std::nullopt : std::optional(found->value);
}

std::string_view wordOf(std::int32_t value, std::span<const ZViewWord> words)
{
    const auto found = std::ranges::find(words, value, &ZViewWord::value);
    return found == words.end() ? std::string_view() : found->word;
}

bool readNamedRect(const ZXMLElement& view, std::string_view name, ZRect& rect)
{
    const auto tag = findTag(view, "rect", "name", name);
    if (tag)
        rect = readRect(*tag);
    return tag != nullptr;
}

bool readNamedColor(const ZXMLElement& view, std::string_view name, ZColor& color)
{
    const auto tag = findTag(view, "color", "name", name);
    if (tag)
        color = readColor(*tag);
    return tag != nullptr;
}

bool readColorTag(const ZXMLElement& xml, std::string_view tag, ZColor& color)
{
    const auto child = xml.GetChild(tag);
    if (child)
        color = readColor(*child);
    return child != nullptr;
}

void readScale(const ZXMLElement& view, float& horizontal, float& vertical)
{
    const auto scale = view.GetChild("scale");
    if (!scale)
        return;
    if (scale->HasAttribute("horizontal"))
        horizontal = scale->GetFloat("horizontal");
    if (scale->HasAttribute("vertical"))
        vertical = scale->GetFloat("vertical");
}

std::string readTarget(const ZXMLElement& view)
{
    std::string target;
    for (std::int32_t i = 0; i < view.GetChildCount("element"); ++i) {
        const auto element = view.GetChild("element", i);
        if (element->HasAttribute("target"))
            target = element->GetAttribute("target");
    }
    return target;
}

void writeNamedRect(ZXMLElement& xml, std::string_view name, const ZRect& rect)
{
    ZXMLElement child("rect");
    child.AddAttribute("name", name);
    child.AddAttribute("left", rect.left);
    child.AddAttribute("top", rect.top);
    child.AddAttribute("width", rect.GetWidth());
    child.AddAttribute("height", rect.GetHeight());
    xml.AddChild(child);
}

void writeColorTag(ZXMLElement& xml, std::string_view tag, const ZColor& color)
{
    ZXMLElement child(tag);
    child.AddAttribute("red", std::int32_t{color.red});
    child.AddAttribute("green", std::int32_t{color.green});
    child.AddAttribute("blue", std::int32_t{color.blue});
    child.AddAttribute("alpha", std::int32_t{color.alpha});
    xml.AddChild(child);
}

void writeScale(ZXMLElement& view, float horizontal, float vertical)
{
    ZXMLElement scale("scale");
    scale.AddAttribute("horizontal", horizontal);
    scale.AddAttribute("vertical", vertical);
    view.AddChild(scale);
}

void writeTarget(ZXMLElement& view, std::string_view target)
{
    if (target.empty())
        return;
    ZXMLElement element("element");
    element.AddAttribute("target", target);
    view.AddChild(element);
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

/// A child with a copy of its text.
struct PlainChild
{
    ZXMLTag tag;
    std::string text;
};

/// Splits a text into children in the simplest way: a scan for each level, with a depth counter.
inline std::vector<PlainChild> plainChildren(const std::string& text)
{
    std::vector<PlainChild> children;
    bool inside = false;
    std::int32_t depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t end = i;
        ZXMLTag tag;
        if (text[i] == '<') {
            end = tag.Read(text, i);
            if (end == 0)
                break;
            depth += tag.GetKind();
            if (inside && depth == 0 && tag.Name() == children.back().tag.Name()) {
                inside = false;
            } else if (!inside && tag.Name() == "?xml") {
                depth -= 1;
            } else if (!inside && (tag.GetKind() > 0 || (tag.GetKind() == 0 && depth == 0))) {
                inside = tag.GetKind() > 0;
                children.push_back({tag, {}});
                i = end;
                continue;
            }
        }
        if (inside)
            children.back().text += text.substr(i, end + 1 - i);
        i = end;
    }
    return children;
}

/// Compares all elements with those of plainChildren and names the first difference; empty when
/// there is none.
inline std::string differenceFromPlain(const ZXMLDocument& document, const std::string& text)
{
    const auto expected = plainChildren(text);
    if (document.GetChildCount() != static_cast<std::int32_t>(expected.size()))
        return "number of children in: " + text;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto child = document.GetChild(static_cast<std::int32_t>(i));
        const ZXMLTag& tag = expected[i].tag;
        if (child->GetName() != tag.Name() || child->GetAttributeCount() != tag.AttributeCount() ||
            child->GetText() != expected[i].text)
            return "child " + std::to_string(i) + " in: " + text;
        const std::string difference = differenceFromPlain(*child, expected[i].text);
        if (!difference.empty())
            return difference;
    }
    return {};
}

inline std::string differenceFromPlain(const std::string& text)
{
    const ZXMLDocument document(text.data(), static_cast<std::int32_t>(text.size()),
                                ZXMLDocument::Comments::kKept);
    return differenceFromPlain(document, text);
}

}  // namespace orvane

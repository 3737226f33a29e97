// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowAttributes.h"

#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

namespace
{

ZWindowAttributes::TitleStyle titleStyleOf(const ZXMLElement& xml)
{
    if (xml.AttributeIs("titlestyle", "app-doc"))
        return ZWindowAttributes::TitleStyle::kApplicationAndDocument;
    if (xml.AttributeIs("titlestyle", "doc"))
        return ZWindowAttributes::TitleStyle::kDocument;
    if (xml.AttributeIs("titlestyle", "app"))
        return ZWindowAttributes::TitleStyle::kApplication;
    return ZWindowAttributes::TitleStyle::kTitle;
}

ZWindowAttributes::CloseStyle closeStyleOf(const ZXMLElement& xml)
{
    if (xml.AttributeIs("closestyle", "app"))
        return ZWindowAttributes::CloseStyle::kApplication;
    if (xml.AttributeIs("closestyle", "doc"))
        return ZWindowAttributes::CloseStyle::kDocument;
    if (xml.AttributeIs("closestyle", "hide") || xml.GetAttributeBool("tool"))
        return ZWindowAttributes::CloseStyle::kHide;
    return ZWindowAttributes::CloseStyle::kApplication;
}

}  // namespace

ZWindowAttributes::ZWindowAttributes(const ZXMLElement& xml)
    : child(xml.GetAttributeBool("child"))
    , dialog(xml.GetAttributeBool("dialog"))
    , mdiChild(xml.GetAttributeBool("mdichild"))
    , resizable(!xml.AttributeIs("resize", "false"))
    , visibleWhenCreated(!xml.AttributeIs("visiblewhencreated", "false"))
    , title(xml.GetAttribute("title"))
    , titleStyle(titleStyleOf(xml))
    , closeStyle(closeStyleOf(xml))
{
    if (const std::int32_t frames = xml.GetInt32("maxfps"); frames >= 1)
        maxFrames = frames;
}

ZString ZWindowAttributes::ComposeTitle(const ZString& application, const ZString& document) const
{
    switch (titleStyle) {
    case TitleStyle::kTitle:
        return title;
    case TitleStyle::kDocument:
        return document;
    case TitleStyle::kApplication:
        return application;
    case TitleStyle::kApplicationAndDocument:
        break;
    }
    ZString both = application;
    if (!document.IsEmpty()) {
        both.Append(" - ");
        both.Append(document);
    }
    return both;
}

}  // namespace orvane

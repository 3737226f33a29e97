// SPDX-License-Identifier: GPL-3.0-or-later
// The XML of a view: reading, the making of its subviews, and writing.

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZTrace.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"
#include "zlib/common/views/ZStringView.h"
#include "zlib/common/views/ZView.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <array>
#include <optional>
#include <string>

namespace orvane
{

namespace
{

struct Word
{
    std::string_view word;
    std::int32_t value;
};

// Where several words mean one value, the first is the one that is written.
constexpr std::array kAlignWords = {
    Word{"center", ZView::kAlignCentre},   Word{"middle", ZView::kAlignCentre},
    Word{"begin", ZView::kAlignBegin},     Word{"top", ZView::kAlignBegin},
    Word{"left", ZView::kAlignBegin},      Word{"end", ZView::kAlignEnd},
    Word{"bottom", ZView::kAlignEnd},      Word{"right", ZView::kAlignEnd},
    Word{"stretch", ZView::kAlignStretch}, Word{"fill", ZView::kAlignStretch},
};
constexpr std::array kBitmapWords = {
    Word{"origin", ZView::kBitmapOrigin},
    Word{"center", ZView::kBitmapCenter},
    Word{"stretch", ZView::kBitmapStretch},
    Word{"stretchwidth", ZView::kBitmapStretchWidth},
    Word{"stretchheight", ZView::kBitmapStretchHeight},
    Word{"tile", ZView::kBitmapTile},
};
constexpr std::array kFrameWords = {
    Word{"off", ZView::kFrameOff},
    Word{"rect", ZView::kFrameRect},
    Word{"rounded", ZView::kFrameRounded},
    Word{"debug", ZView::kFrameDebug},
};

template <std::size_t kCount>
std::optional<std::int32_t> readWord(const ZXMLElement& xml, const char* attribute,
                                     const std::array<Word, kCount>& words)
{
    for (const Word& word : words)
        if (xml.AttributeIs(attribute, word.word))
            return word.value;
    return std::nullopt;
}

template <std::size_t kCount>
std::string_view wordOf(std::int32_t value, const std::array<Word, kCount>& words)
{
    for (const Word& word : words)
        if (word.value == value)
            return word.word;
    return {};
}

void readNumber(const ZXMLElement& xml, const char* attribute, std::int32_t& out)
{
    if (xml.HasAttribute(attribute))
        out = xml.GetInt32(attribute);
}

std::int32_t numberOr(const ZXMLElement& xml, const char* attribute, std::int32_t absent)
{
    return xml.HasAttribute(attribute) ? xml.GetInt32(attribute) : absent;
}

void readColor(const ZXMLElement& xml, const char* tag, ZColor& out)
{
    if (const auto color = xml.GetChild(tag))
        out = readColor(*color);
}

void addColor(ZXMLElement& xml, const char* tag, const ZColor& color)
{
    ZXMLElement child(tag);
    child.AddAttribute("red", std::int32_t{color.red});
    child.AddAttribute("green", std::int32_t{color.green});
    child.AddAttribute("blue", std::int32_t{color.blue});
    child.AddAttribute("alpha", std::int32_t{color.alpha});
    xml.AddChild(child);
}

void addRect(ZXMLElement& xml, const char* name, const ZRect& rect)
{
    ZXMLElement child("rect");
    child.AddAttribute("name", name);
    child.AddAttribute("left", rect.left);
    child.AddAttribute("top", rect.top);
    child.AddAttribute("width", rect.GetWidth());
    child.AddAttribute("height", rect.GetHeight());
    xml.AddChild(child);
}

void addFont(ZXMLElement& xml, const ZFont& font)
{
    ZXMLElement child("font");
    child.AddAttribute("typeface", withoutMarkup(font.GetTypeface().ToNarrow()));
    child.AddAttribute("height", font.GetHeight());
    xml.AddChild(child);
}

}  // namespace

ZView::ZView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZHandler(xml, application)
    , mFont(ZFont::MakeDefault())
{
    ReadTarget(*xml);
    ReadLayout(*xml);
    ReadBounds(*xml);
    ReadScale(*xml);
    ReadPen(*xml);
    ReadBackgroundColor(*xml);
    ReadBackgroundBitmap(*xml, "bgbitmap", true);
    ReadBackgroundBitmap(*xml, "backgrndbitmap", false);
    ReadFrame(*xml);
    ReadTooltips(*xml);
    LayoutSubviews(*xml);
}

void ZView::ReadTarget(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("element");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto element = xml.GetChild("element", i);
        if (element->HasAttribute("target"))
            mTargetName = element->GetAttribute("target");
    }
}

void ZView::ReadLayout(const ZXMLElement& xml)
{
    if (const auto constraint = xml.GetChild("constraint")) {
        mMinSize = {numberOr(*constraint, "minwidth", 1), numberOr(*constraint, "minheight", 1)};
        mMaxSize = {numberOr(*constraint, "maxwidth", 10000),
                    numberOr(*constraint, "maxheight", 10000)};
    }
    readNumber(xml, "flex", mFlex);
    mAlign = readWord(xml, "align", kAlignWords).value_or(mAlign);
    mAnimated = xml.GetAttributeBool("animated");
    mDoDefaultDraw = xml.GetAttributeBool("DoDefaultDraw");
    mFill = xml.GetAttributeBool("fill");
    if (mFill)
        mStretchMask = kStretchAll;
}

void ZView::ReadBounds(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("rect");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto rect = xml.GetChild("rect", i);
        if (!rect->AttributeIs("name", "bounds"))
            continue;
        mBounds = readRect(*rect);
        mFrame = {0, 0, mBounds.GetWidth(), mBounds.GetHeight()};
    }
    for (std::int32_t i = 0; i < count; ++i) {
        const auto rect = xml.GetChild("rect", i);
        if (rect->AttributeIs("name", "frame"))
            mBounds = readRect(*rect);
    }
}

void ZView::ReadScale(const ZXMLElement& xml)
{
    const auto scale = xml.GetChild("scale");
    if (!scale)
        return;
    // No window yet, so nothing waits to be repainted.
    if (scale->HasAttribute("horizontal"))
        mHorizontalScale = scale->GetFloat("horizontal");
    if (scale->HasAttribute("vertical"))
        mVerticalScale = scale->GetFloat("vertical");
}

void ZView::ReadPen(const ZXMLElement& xml)
{
    if (const auto font = xml.GetChild("font"))
        mFont = boost::make_shared<ZFont>(*font);
    readColor(xml, "pencolor", mPenColor);
    readColor(xml, "brushcolor", mBrushColor);
}

void ZView::ReadBackgroundColor(const ZXMLElement& xml)
{
    mHasBackground = xml.GetChild("bgcolor") != nullptr;
    readColor(xml, "bgcolor", mBackgroundColor);
    if (xml.GetChild("backgrndcolor"))
        mHasBackground = false;
    readColor(xml, "backgrndcolor", mBackgroundColor);
}

void ZView::ReadBackgroundBitmap(const ZXMLElement& xml, std::string_view tag, bool background)
{
    const auto bitmap = xml.GetChild(tag);
    if (!bitmap)
        return;
    if (bitmap->HasAttribute("resource")) {
        mBackgroundBitmap = std::make_unique<ZBitmap>(*bitmap, GetApplication());
        mBitmapStyle = readWord(*bitmap, "style", kBitmapWords).value_or(mBitmapStyle);
        mHasBackground = background;
    }
    if (bitmap->HasAttribute("shader")) {
        mShaderName = ZString(bitmap->GetAttribute("shader"));
        mHasBackground = background;
    }
}

void ZView::ReadFrame(const ZXMLElement& xml)
{
    const auto frame = xml.GetChild("frame");
    if (!frame)
        return;
    mFrameStyle = readWord(*frame, "style", kFrameWords).value_or(mFrameStyle);
    if (mFrameStyle == kFrameRect || mFrameStyle == kFrameRounded)
        readNumber(*frame, "width", mFrameWidth);
    if (mFrameStyle == kFrameRounded)
        readNumber(*frame, "radius", mFrameRadius);
    readColor(*frame, "strokecolor", mStrokeColor);
    readColor(*frame, "fillcolor", mFillColor);
    if (mFrameStyle != kFrameOff)
        mHasBackground = true;
}

void ZView::ReadTooltips(const ZXMLElement& xml)
{
    const std::int32_t count = xml.GetChildCount("tooltip");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto tooltip = xml.GetChild("tooltip", i);
        if (!tooltip->AttributeIs("type", "short") || !tooltip->HasAttribute("text"))
            continue;
        mTooltipText = ZString(tooltip->GetAttribute("text"));
        mHasTooltip = true;
        ZApplication* const application = GetApplication();
        if (application && tooltip->HasAttribute("key"))
            application->GetResourceString(tooltip->GetInt32("key"), mTooltipText);
    }
}

void ZView::LayoutSubviews(const ZXMLElement& xml)
{
    const auto subviews = xml.GetChild("subviews");
    if (!subviews)
        return;
    const std::int32_t count = subviews->GetChildCount("view");
    for (std::int32_t i = 0; i < count; ++i)
        AddSubviewFrom(subviews->GetChild("view", i));
}

void ZView::AddSubviewFrom(const boost::shared_ptr<ZXMLElement>& xml)
{
    const std::string className = xml->GetAttributeOr("class", "");
    ZTrace::Write("View (" + GetName() + "): Adding " + className + " instance named '" +
                  xml->GetAttributeOr("name", "") + "' \n");
    ZApplication* const application = GetApplication();
    boost::shared_ptr<ZView> view;
    if (application && application->GetClassRegistry().Contains(className))
        view = boost::dynamic_pointer_cast<ZView>(
            application->GetClassRegistry().Create(className, xml));
    if (!view) {
        const auto label = boost::make_shared<ZStringView>(xml, application);
        label->SetText(ZString(className));
        view = label;
    }
    AddSubview(view, false);
}

boost::shared_ptr<ZXMLElement> ZView::ExtractHeader() const
{
    auto xml = boost::make_shared<ZXMLElement>("view");
    xml->AddAttribute("class", GetClassName());
    xml->AddAttribute("name", GetName());
    xml->AddAttribute("flex", mFlex);
    xml->AddAttribute("align", wordOf(mAlign, kAlignWords));
    xml->AddAttribute("fill", mFill ? "true" : "false");
    return xml;
}

void ZView::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    if (!mTargetName.empty()) {
        ZXMLElement element("element");
        element.AddAttribute("target", mTargetName);
        xml->AddChild(element);
    }
    addRect(*xml, "bounds", mBounds);
    WriteLayout(*xml);
    addFont(*xml, *mFont);
    addColor(*xml, "pencolor", mPenColor);
    addColor(*xml, "brushcolor", mBrushColor);
    WriteBackground(*xml);
    WriteFrame(*xml);
    if (mHasTooltip) {
        ZXMLElement tooltip("tooltip");
        tooltip.AddAttribute("type", "short");
        tooltip.AddAttribute("text", withoutMarkup(mTooltipText.ToNarrow()));
        xml->AddChild(tooltip);
    }
    ZXMLElement subviews("subviews");
    for (const auto& child : CopyChildren())
        subviews.AddChild(*child->ExtractXML());
    xml->AddChild(subviews);
}

void ZView::WriteLayout(ZXMLElement& xml) const
{
    ZXMLElement constraint("constraint");
    constraint.AddAttribute("minwidth", mMinSize.x);
    constraint.AddAttribute("minheight", mMinSize.y);
    constraint.AddAttribute("maxwidth", mMaxSize.x);
    constraint.AddAttribute("maxheight", mMaxSize.y);
    xml.AddChild(constraint);
    ZXMLElement scale("scale");
    scale.AddAttribute("horizontal", mHorizontalScale);
    scale.AddAttribute("vertical", mVerticalScale);
    xml.AddChild(scale);
}

void ZView::WriteBackground(ZXMLElement& xml) const
{
    const bool isPicture = mBackgroundBitmap || !mShaderName.IsEmpty();
    addColor(xml, mHasBackground && !isPicture ? "bgcolor" : "backgrndcolor", mBackgroundColor);
    if (!isPicture)
        return;
    ZXMLElement bitmap(mHasBackground ? "bgbitmap" : "backgrndbitmap");
    if (!mShaderName.IsEmpty())
        bitmap.AddAttribute("shader", mShaderName.ToNarrow());
    else
        bitmap.AddAttribute("resource", mBackgroundBitmap->GetResourceName().ToNarrow());
    bitmap.AddAttribute("style", wordOf(mBitmapStyle, kBitmapWords));
    xml.AddChild(bitmap);
}

void ZView::WriteFrame(ZXMLElement& xml) const
{
    const std::string_view style = wordOf(mFrameStyle, kFrameWords);
    if (mFrameStyle == kFrameOff || style.empty())
        return;
    ZXMLElement frame("frame");
    frame.AddAttribute("style", style);
    frame.AddAttribute("width", mFrameWidth);
    frame.AddAttribute("radius", mFrameRadius);
    addColor(frame, "strokecolor", mStrokeColor);
    addColor(frame, "fillcolor", mFillColor);
    xml.AddChild(frame);
}

}  // namespace orvane

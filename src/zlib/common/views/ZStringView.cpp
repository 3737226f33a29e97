// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZStringView.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cassert>

namespace orvane
{

namespace
{

constexpr const char* kTextAlignWords[] = {"center", "left", "right"};

}  // namespace

ZStringView::ZStringView(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZView(xml, application)
{
    if (const auto label = xml->GetChild("label"))
        ReadLabel(*label);
}

ZStringView::~ZStringView() = default;

void ZStringView::ReadLabel(const ZXMLElement& xml)
{
    mText = ZString(xml.GetAttribute("text"));
    for (std::int32_t align = kAlignCentre; align <= kAlignEnd; ++align)
        if (xml.AttributeIs("align", kTextAlignWords[align]))
            mAlign = align;
    ZApplication* const application = GetApplication();
    if (application && xml.HasAttribute("key"))
        application->GetResourceString(xml.GetInt32("key"), mText);
}

bool ZStringView::IsKindOf(std::string_view className) const
{
    return className == "ZStringViewClass" || ZView::IsKindOf(className);
}

const char* ZStringView::GetClassName() const
{
    return "ZStringViewClass";
}

void ZStringView::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    ZView::ExtractBody(xml);
    ZXMLElement label("label");
    label.AddAttribute("text", withoutMarkup(mText.ToNarrow()));
    if (mAlign >= kAlignCentre && mAlign <= kAlignEnd)
        label.AddAttribute("align", kTextAlignWords[mAlign]);
    xml->AddChild(label);
}

void ZStringView::OnAttached()
{
    ZView::OnAttached();
    MeasureText();
}

void ZStringView::OnDetached()
{
    mCache.reset();
    ZView::OnDetached();
}

void ZStringView::MeasureText()
{
    mTextWidth = StringWidth(mText);
    mTextHeight = StringHeight(mText);
}

void ZStringView::RenderText()
{
    assert(mContext);
    const ZRect frame = GetFrame();
    mCache = boost::make_shared<ZBitmap>(frame.GetWidth(), frame.GetHeight(), mContext.get(),
                                         mCacheAlpha);
    mCache->SetFont(mFont);
    mCache->SetPenColor(mPenColor);
    mCache->DrawString(mText, mCache->GetFrame(), mAlign);
}

void ZStringView::Draw(const ZRect& /*rect*/)
{
    if (!mCache || !mCache->Suits(*mContext))
        RenderText();
    DrawBitmap(*mCache, 0, 0);
}

void ZStringView::SetText(const ZString& text)
{
    mText = text;
    if (mWindow)
        MeasureText();
    mCache.reset();
    Invalidate();
}

void ZStringView::SetPenColor(const ZColor& color)
{
    ZView::SetPenColor(color);
    mCache.reset();
    Invalidate();
}

void ZStringView::SetFont(const boost::shared_ptr<ZFont>& font)
{
    ZView::SetFont(font);
    mCache.reset();
    Invalidate();
}

void ZStringView::SetAlign(std::int32_t align)
{
    mAlign = align;
    Invalidate();
}

}  // namespace orvane

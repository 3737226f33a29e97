// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZFont.h"

#include "zlib/common/objects/ZXMLElement.h"

#include <boost/make_shared.hpp>

namespace orvane
{

ZFont::ZFont(const ZString& typeface, std::int32_t height)
    : mHeight(height)
    , mTypeface(typeface)
{
}

ZFont::ZFont(const ZXMLElement& xml)
{
    if (const auto typeface = xml.GetAttributeString("typeface"))
        mTypeface = *typeface;
    if (xml.HasAttribute("height"))
        mHeight = xml.GetInt32("height");
}

boost::shared_ptr<ZFont> ZFont::MakeDefault()
{
    return boost::make_shared<ZFont>(ZString("Arial"));
}

void ZFont::SetUnderline(bool underline)
{
    mUnderline = underline;
    FontChanged();
}

void ZFont::SetHeight(std::int32_t height)
{
    mHeight = height;
    FontChanged();
}

void ZFont::SetBold(bool bold)
{
    mBold = bold;
    FontChanged();
}

}  // namespace orvane

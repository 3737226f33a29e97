// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewTags.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"

#include <boost/smart_ptr/make_shared.hpp>

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

bool readNamedColor(const ZXMLElement& view, std::string_view name, ZColor& color)
{
    const auto tag = findTag(view, "color", "name", name);
    if (tag)
        color = readColor(*tag);
    return tag != nullptr;
}

std::int32_t readNumber(const ZXMLElement& tag, std::string_view attribute)
{
    return tag.HasAttribute(attribute) ? tag.GetInt32(attribute) : 0;
}

}  // namespace orvane

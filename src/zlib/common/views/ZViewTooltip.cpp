// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewTooltip.h"

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <cstdint>

namespace orvane
{

void ZViewTooltip::Read(const ZXMLElement& view, ZApplication* application)
{
    const std::int32_t count = view.GetChildCount("tooltip");
    for (std::int32_t i = 0; i < count; ++i) {
        const auto tag = view.GetChild("tooltip", i);
        if (!tag->AttributeIs("type", "short") || !tag->HasAttribute("text"))
            continue;
        text = ZString(tag->GetAttribute("text"));
        exists = true;
        if (application && tag->HasAttribute("key"))
            application->GetResourceString(tag->GetInt32("key"), text);
    }
}

void ZViewTooltip::Write(ZXMLElement& view) const
{
    if (!exists)
        return;
    ZXMLElement tag("tooltip");
    tag.AddAttribute("type", "short");
    tag.AddAttribute("text", withoutMarkup(text.ToNarrow()));
    view.AddChild(tag);
}

}  // namespace orvane

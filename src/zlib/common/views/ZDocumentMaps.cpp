// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZDocumentMaps.h"

#include "zlib/common/objects/ZXMLElement.h"

#include <algorithm>
#include <cstdint>

namespace orvane
{

void ZDocumentMaps::Add(const ZXMLElement& xml)
{
    for (std::int32_t i = 0; i < xml.GetChildCount(); ++i)
        mMaps.Append(std::make_shared<const ZDocumentMap>(*xml.GetChild(i)));
}

const ZDocumentMap* ZDocumentMaps::Find(const ZDocument& document) const
{
    const Maps maps = mMaps.Copy();
    const auto found =
        std::ranges::find_if(maps, [&](const auto& map) { return map->Matches(document); });
    return found == maps.end() ? nullptr : found->get();  // the list never shrinks
}

}  // namespace orvane

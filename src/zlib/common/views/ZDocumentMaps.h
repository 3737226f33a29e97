// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/views/ZDocumentMap.h"

#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZDocument;
class ZXMLElement;

/// A list of document maps that grows only. [interface thread]
class ZDocumentMaps
{
public:
    using Maps = std::vector<std::shared_ptr<const ZDocumentMap>>;

    /// listName names the list's lock.
    explicit ZDocumentMaps(std::string_view listName)
        : mMaps(listName)
    {
    }

    /// Adds a map for each child of the tag. [setup]
    void Add(const ZXMLElement& xml);
    /// Returns the first map that matches; null when none does. It lives as long as the list.
    [[nodiscard]] const ZDocumentMap* Find(const ZDocument& document) const;
    [[nodiscard]] Maps Copy() const { return mMaps.Copy(); }

private:
    ZLockedList<std::shared_ptr<const ZDocumentMap>> mMaps;
};

}  // namespace orvane

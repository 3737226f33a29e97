// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

/// A type of file that a document can be read from or saved to.
struct ZFiletype
{
    std::string docClass;  // class of the documents that these files hold
    std::string mimeType;
    std::uint32_t macType = 0;  // four characters, the first in the highest byte; 0 for none
    std::string extension;      // without the dot
    ZString description;        // shown to the user
};

using ZFiletypes = std::vector<boost::shared_ptr<ZFiletype>>;
using ZFiletypeList = ZLockedList<boost::shared_ptr<ZFiletype>>;

}  // namespace orvane

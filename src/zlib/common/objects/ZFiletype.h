// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

/// A kind of file that a document can be read from or saved to: a plain record.
struct ZFiletype
{
    std::string docClass;  // of the document that takes such files
    std::string mimeType;
    std::uint32_t macType = 0;  // four characters, the first in the top byte; 0 for none
    std::string extension;      // without the dot
    ZString description;        // for the user
};

using ZFiletypes = std::vector<boost::shared_ptr<ZFiletype>>;

}  // namespace orvane

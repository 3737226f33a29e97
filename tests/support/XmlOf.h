// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZXMLElement.h"

namespace orvane
{

/// Parses a text and returns its first element; null for a text without one.
inline boost::shared_ptr<ZXMLElement> xmlOf(const std::string& text)
{
    return ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0);
}

}  // namespace orvane

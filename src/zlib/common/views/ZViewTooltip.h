// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

namespace orvane
{

class ZApplication;
class ZXMLElement;

/// The tooltip that the description of a view gives it. [interface thread]
struct ZViewTooltip
{
    /// Reads the `tooltip` tags of type "short". The application looks up texts that are given by
    /// number; without one the plain text stays. [setup]
    void Read(const ZXMLElement& view, ZApplication* application);
    /// Adds the tag that Read reads, unless there is no tip.
    void Write(ZXMLElement& view) const;

    ZString text;
    bool exists = false;
};

}  // namespace orvane

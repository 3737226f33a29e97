// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

class ZDocument;
class ZXMLElement;

/// Says which documents get which window: one `documenttype` of a window manager or a window type.
class ZDocumentMap
{
public:
    /// Another tag is traced and leaves the map empty: it matches every document and names no
    /// window.
    explicit ZDocumentMap(const ZXMLElement& xml);

    /// Compares the document's type name and class with those of the map; a map without one of them
    /// matches any.
    [[nodiscard]] bool Matches(const ZDocument& document) const;
    [[nodiscard]] const std::string& GetWindowName() const { return mWindowName; }
    [[nodiscard]] bool IsShown() const { return mShow; }

private:
    std::string mDocumentName;
    std::string mDocumentClass;
    std::string mWindowName;
    bool mShow = false;
};

}  // namespace orvane

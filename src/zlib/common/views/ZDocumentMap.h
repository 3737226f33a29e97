// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane
{

class ZDocument;
class ZXMLElement;

/// Which documents get which window: a `documenttype` of a window manager or of a window type.
class ZDocumentMap
{
public:
    /// Another tag leaves the map empty, so that it matches every document and names no window.
    explicit ZDocumentMap(const ZXMLElement& xml);

    /// By the document's type name and by its class, as far as the map tells them.
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

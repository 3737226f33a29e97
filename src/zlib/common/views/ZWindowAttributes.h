// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>

namespace orvane
{

class ZXMLElement;

/// What the attributes of a `windowtype` say about its window. [interface thread]
struct ZWindowAttributes
{
    static constexpr std::int32_t kDefaultMaxFrames = 30;

    /// Values of `titlestyle`: what the title bar names.
    enum class TitleStyle
    {
        kTitle,
        kApplicationAndDocument,
        kDocument,
        kApplication,
    };
    /// Values of `closestyle`: what a close request closes.
    enum class CloseStyle
    {
        kApplication,
        kDocument,
        kHide,
    };

    explicit ZWindowAttributes(const ZXMLElement& xml);

    /// Returns the title bar's text for an application and a document of these titles.
    [[nodiscard]] ZString ComposeTitle(const ZString& application, const ZString& document) const;

    bool child = false;
    bool dialog = false;
    bool mdiChild = false;
    bool resizable = true;
    bool visibleWhenCreated = true;
    ZString title;
    TitleStyle titleStyle = TitleStyle::kTitle;
    CloseStyle closeStyle = CloseStyle::kApplication;
    std::int32_t maxFrames = kDefaultMaxFrames;  // frames a second
};

}  // namespace orvane

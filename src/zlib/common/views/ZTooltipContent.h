// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZContentWindow.h"

namespace orvane
{

/// The content of a tip: its text, wrapped where it is long, on a dark ground. [interface thread]
class ZTooltipContent : public ZWindowContent
{
public:
    explicit ZTooltipContent(const ZString& text);

    /// Returns width and height of the window, in pixels.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    void Draw(ZDrawingContext& context) override;

private:
    ZString mText;
    ZPoint mSize;
};

}  // namespace orvane

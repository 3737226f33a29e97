// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZContentWindow.h"

namespace orvane
{

/// A tip: a line of text, or several where it is long, on a dark ground.
class ZTooltipContent : public ZWindowContent
{
public:
    explicit ZTooltipContent(const ZString& text);

    /// Width and height of the window that it asks for.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    void Draw(ZDrawingContext& context) override;

private:
    ZString mText;
    ZPoint mSize;
};

}  // namespace orvane

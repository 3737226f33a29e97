// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

namespace orvane
{

class ZDrawingContext;
class ZView;
class ZWindow;

/// The value of a control as a text beside it, on top of all views and inside the window. A window
/// shows one at a time. [interface thread, with the interface lock]
class ZValueTip
{
public:
    /// The window owns the tip.
    explicit ZValueTip(ZWindow& window)
        : mWindow(window)
    {
    }

    /// Shows a text above a rectangle of a view, in the view's coordinates; below it where there is
    /// no room above. It replaces the tip of any view.
    void Show(const ZView& view, const ZString& text, const ZRect& around);
    /// Hides the tip if it is that view's.
    void Hide(const ZView& view);
    /// Draws what lies in the rectangle update. Drawing it twice changes nothing.
    void Draw(ZDrawingContext& context, const ZRect& update) const;

    /// Returns the text, empty while there is no tip.
    [[nodiscard]] const ZString& GetText() const { return mText; }
    /// Returns where the tip is, in window coordinates; empty while there is none.
    [[nodiscard]] const ZRect& GetRect() const { return mRect; }

private:
    void Replace(const ZView* view, const ZString& text, const ZRect& rect);

    ZWindow& mWindow;
    const ZView* mView = nullptr;  // null while there is no tip
    ZString mText;
    ZRect mRect;
};

}  // namespace orvane

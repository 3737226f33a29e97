// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZContentWindow.h"

#include <functional>

namespace orvane
{

/// What a message box shows: a sign for its kind, the text, wrapped, and a button that ends it, as
/// Return, the space bar and Escape do.
class ZMessageBoxContent : public ZWindowContent
{
public:
    ZMessageBoxContent(ZMessageBox::Kind kind, const ZString& text);

    /// Width and height of the window that it asks for.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    [[nodiscard]] const ZRect& GetButtonRect() const { return mButton; }
    /// Called at the end.
    void SetEnded(std::function<void()> ended) { mEnded = std::move(ended); }

    void Draw(ZDrawingContext& context) override;
    bool Mouse(const ZNativeMouseEvent& event) override;
    bool Key(const ZNativeKeyEvent& event) override;
    void Dismiss() override;

private:
    void End() const;

    ZMessageBox::Kind mKind;
    ZString mText;
    ZPoint mSize;
    ZRect mTextRect;
    ZRect mButton;
    bool mOver = false;
    bool mPressed = false;  // it went down on the button
    std::function<void()> mEnded;
};

}  // namespace orvane

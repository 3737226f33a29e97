// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZContentWindow.h"

#include <functional>

namespace orvane
{

/// The content of a message box: a sign for its kind, the wrapped text and a button OK. The button,
/// Return, the space bar and Escape end it. [interface thread]
class ZMessageBoxContent : public ZWindowContent
{
public:
    ZMessageBoxContent(ZMessageBox::Kind kind, const ZString& text);

    /// Returns width and height of the window, in pixels.
    [[nodiscard]] ZPoint GetSize() const { return mSize; }
    [[nodiscard]] const ZRect& GetButtonRect() const { return mButton; }
    /// Sets what is called when the user ends the box.
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
    bool mPressed = false;  // the press began on the button
    std::function<void()> mEnded;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZMessageBox.h"

namespace orvane
{

/// A recorded message box.
struct ShownBox
{
    ZMessageBox::Kind kind;
    std::string title;
    std::string text;
};

/// Records message boxes instead of showing them, for the life of the object.
struct BoxRecorder
{
    ~BoxRecorder() { ZMessageBox::SetPresenter(mBefore); }

    std::vector<ShownBox> boxes;
    std::function<void()> whileOpen;

private:
    ZMessageBox::Presenter mBefore = ZMessageBox::SetPresenter(
        [this](ZMessageBox::Kind kind, const ZString& title, const ZString& text) {
            boxes.push_back({kind, title.ToNarrow(), text.ToNarrow()});
            if (whileOpen)
                whileOpen();
        });
};

}  // namespace orvane

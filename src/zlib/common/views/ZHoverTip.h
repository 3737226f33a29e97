// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <functional>

namespace orvane
{

class ZView;

/// The window's value tip for a view that tells something while the pointer is over it.
/// [interface thread, with the interface lock]
class ZHoverTip
{
public:
    /// What the tip says, and the rectangle, in the view's coordinates, that it leaves free.
    struct Content
    {
        ZString text;
        ZRect around;
    };

    /// The view owns the tip; content() is called whenever the tip is shown.
    ZHoverTip(const ZView& view, std::function<Content()> content);

    /// Shows the tip from now on; the view calls it when the pointer has come.
    void Enter();
    /// Hides the tip; the view calls it when the pointer has left.
    void Leave();
    /// Shows what the content is now, if the pointer is over the view.
    void Update();

private:
    const ZView& mView;
    const std::function<Content()> mContent;
    bool mIsPointedAt = false;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

#include <memory>

namespace orvane
{

namespace
{

constexpr ZColor kBlack{0, 0, 0, 255};

bool contains(const ZRect& outer, const ZRect& inner)
{
    return outer.Union(inner) == outer;
}

}  // namespace

void ZWindow::SetGraphics(ZGraphics* graphics)
{
    mContext->SetGraphics(graphics);
}

void ZWindow::MakeOffscreen()
{
    SetGraphics(nullptr);
    mOffscreenBitmap.reset();
    if (GetArea().IsEmpty())
        return;
    mOffscreenBitmap = std::make_unique<ZBitmap>(mSize.x, mSize.y, mContext.get());
    SetGraphics(mOffscreenBitmap->GetGraphics());
    mOffscreenBitmap->GetGraphics()->FillRect(kBlack, GetArea());
    mRootView->MarkSubtreeDirty();
}

void ZWindow::Invalidate(const ZRect& rect)
{
    ++mInvalidations;
    mInvalidated = mInvalidated.Union(rect);
    if (mNativeWindow)
        mNativeWindow->Invalidate(rect);
}

void ZWindow::RedrawAll()
{
    Invalidate(GetArea());
    mRootView->MarkSubtreeDirty();
}

void ZWindow::Update()
{
    if (mNativeWindow)
        mNativeWindow->Update();
}

void ZWindow::NativePaint(const ZRect& update)
{
    if (!mOffscreenBitmap)
        return;
    if (contains(update, mRootView->GetBounds())) {
        ++mInvalidations;
        mRootView->MarkSubtreeDirty();
    }
    // The platform has asked of itself, or for more than the window has asked for: something was
    // uncovered, and what is clean there has to be drawn too.
    if (mInvalidations == 0 || !contains(mInvalidated, update))
        mRootView->MarkSubtreeDirty();
    mInvalidations = 0;
    mInvalidated = {};
    Paint(update);
    if (mNativeWindow)
        mNativeWindow->Present(*mOffscreenBitmap->GetNative(), update);
}

void ZWindow::Paint(const ZRect& rect)
{
    mRootView->DrawView(rect);
}

const ZBitmap& ZWindow::RenderOffscreen()
{
    if (!mOffscreenBitmap)
        MakeOffscreen();
    if (!mOffscreenBitmap)
        throw ZException("Window '" + GetName() + "' has no size to be drawn in");
    AttachViews();
    IdleFrame();
    mRootView->MarkSubtreeDirty();
    Paint(GetArea());
    return *mOffscreenBitmap;
}

}  // namespace orvane

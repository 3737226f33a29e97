// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowPicture.h"

#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/drawing/ZGraphics.h"

#include <cassert>

namespace orvane
{

namespace
{

constexpr ZColor kBlack{0, 0, 0, 255};

}  // namespace

ZWindowPicture::ZWindowPicture(const boost::shared_ptr<ZDrawingContext>& context)
    : mContext(context)
{
    assert(context);
}

ZWindowPicture::~ZWindowPicture() = default;

void ZWindowPicture::Make(const ZPoint& size, const ZDeviceScale& scale)
{
    assert(size.x >= 0 && size.y >= 0);
    Release();
    if (size.x == 0 || size.y == 0)
        return;
    mBitmap = std::make_unique<ZBitmap>(size.x, size.y, scale.Get());
    mContext->SetGraphics(mBitmap->GetGraphics());
    mBitmap->GetGraphics()->FillRect(kBlack, mBitmap->GetFrame());
}

void ZWindowPicture::Release()
{
    mContext->SetGraphics(nullptr);
    mBitmap.reset();
}

void ZWindowPicture::NoteInvalid(const ZRect& rect)
{
    ++mInvalidations;
    mInvalid = mInvalid.Union(rect);
}

bool ZWindowPicture::TakeUncovered(const ZRect& update)
{
    const bool isAskedFor = mInvalidations > 0 && mInvalid.Union(update) == mInvalid;
    mInvalidations = 0;
    mInvalid = {};
    return !isAskedFor;
}

}  // namespace orvane

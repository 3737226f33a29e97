// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBitmap;
class ZDrawingContext;

/// The offscreen picture of a window, which its views are painted into, and what has been asked to
/// be painted since the last paint. Rectangles are in window coordinates.
/// [interface thread, with the interface lock]
class ZWindowPicture
{
public:
    /// The context that the views draw in gets the picture as its target.
    explicit ZWindowPicture(const boost::shared_ptr<ZDrawingContext>& context);
    ~ZWindowPicture();

    /// Makes a black picture of that size in units in place of the one before; none for an empty
    /// size.
    void Make(const ZPoint& size, const ZDeviceScale& scale);
    /// Releases the picture: the context has no target any more.
    void Release();
    /// Null while there is none.
    [[nodiscard]] const ZBitmap* Get() const { return mBitmap.get(); }

    /// Notes that the window has asked for a part to be painted.
    void NoteInvalid(const ZRect& rect);
    /// Returns whether a paint has to draw clean views too, because the system asks for more than
    /// the window did; then forgets what was noted.
    [[nodiscard]] bool TakeUncovered(const ZRect& update);

private:
    boost::shared_ptr<ZDrawingContext> mContext;
    std::unique_ptr<ZBitmap> mBitmap;
    std::int32_t mInvalidations = 0;  // requests since the last paint
    ZRect mInvalid;                   // around them
};

}  // namespace orvane

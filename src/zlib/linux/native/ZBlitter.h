// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/native/ZSharedPixels.h"
#include "zlib/linux/native/ZXcb.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvane
{

class ZImage;

/// Brings pixels of images to windows: through shared memory where the server takes it, else
/// through the connection. [under the interface lock]
class ZBlitter
{
public:
    enum class Route
    {
        kBest,
        kConnection,
    };

    /// All windows that pixels are put to have this depth and are on the screen of this root.
    ZBlitter(xcb_connection_t* connection, xcb_window_t root, std::uint8_t depth, Route route);

    /// Copies a part of the image to the same place in the window.
    void Put(xcb_window_t window, const ZImage& image, const ZRect& rect);

private:
    void PutRows(xcb_window_t window, const ZImage& image, const ZRect& rows);
    [[nodiscard]] std::span<std::uint32_t> Reserve(std::size_t count);
    [[nodiscard]] std::size_t GetLimit() const;

    xcb_connection_t* const mConnection;
    const std::uint8_t mDepth;
    const bool mSwapsBytes;
    const std::unique_ptr<ZSharedPixels> mShared;  // null where there is none
    std::vector<std::uint32_t> mCopy;              // in its place then
    const xcb_gcontext_t mContext;
};

}  // namespace orvane

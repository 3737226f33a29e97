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

/// Copies pixels of images to windows: through shared memory if the server supports it, else as
/// data of the request. [any thread but the audio thread, under the interface lock]
class ZBlitter
{
public:
    enum class Route
    {
        kBest,
        kConnection,
    };

    /// For windows of this depth on the screen with this root. Tests force Route::kConnection.
    ZBlitter(xcb_connection_t* connection, xcb_window_t root, std::uint8_t depth, Route route);

    /// Copies a part of the image to the same place in the window.
    void Blit(xcb_window_t window, const ZImage& image, const ZRect& rect);

private:
    void BlitRows(xcb_window_t window, const ZImage& image, const ZRect& rows);
    /// Memory for the pixels of the next request.
    [[nodiscard]] std::span<std::uint32_t> Reserve(std::size_t count);
    /// The most pixels of one request.
    [[nodiscard]] std::size_t GetLimit() const;

    xcb_connection_t* const mConnection;
    const std::uint8_t mDepth;
    const bool mSwapsBytes;
    const std::unique_ptr<ZSharedPixels> mShared;  // null without shared memory
    std::vector<std::uint32_t> mCopy;              // pixels of a request without shared memory
    const xcb_gcontext_t mContext;
};

}  // namespace orvane

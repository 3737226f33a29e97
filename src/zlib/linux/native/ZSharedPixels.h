// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/linux/native/ZXcb.h"

#include <xcb/shm.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

/// Memory that this process writes pixels to and the display's server reads them from. It is handed
/// out piece after piece, and what was handed out is written again only when the server has done
/// with it. [under the interface lock]
class ZSharedPixels
{
public:
    /// Pixels in one piece at most.
    static constexpr std::size_t kCapacity = std::size_t{1} << 20;

    /// Null where the server is on another machine or does not share memory.
    [[nodiscard]] static std::unique_ptr<ZSharedPixels> Create(xcb_connection_t* connection);
    ZSharedPixels(const ZSharedPixels&) = delete;
    ZSharedPixels& operator=(const ZSharedPixels&) = delete;
    ~ZSharedPixels();

    /// Room for count pixels, at most kCapacity, to be written and then put at once. Waits for the
    /// server each time that the memory is used up.
    [[nodiscard]] std::span<std::uint32_t> Reserve(std::size_t count);
    /// Has the server copy the pixels of the last Reserve, width x height of them, to a window.
    void Put(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
             const xcb_rectangle_t& rect) const;

private:
    ZSharedPixels(xcb_connection_t* connection, std::span<std::uint32_t> memory, xcb_shm_seg_t id);

    xcb_connection_t* const mConnection;
    const std::span<std::uint32_t> mMemory;
    const xcb_shm_seg_t mId;
    std::size_t mBegin = 0;  // of the last piece
    std::size_t mEnd = 0;
};

}  // namespace orvane

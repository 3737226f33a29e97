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

/// Memory shared with the display's server: this process writes pixels, the server reads them. It
/// is handed out piece by piece and reused only when the server has finished reading.
/// [any thread but the audio thread, under the interface lock]
class ZSharedPixels
{
public:
    /// The most pixels in one piece.
    static constexpr std::size_t kCapacity = std::size_t{1} << 20;

    /// Null if the server is on another machine or does not share memory.
    [[nodiscard]] static std::unique_ptr<ZSharedPixels> Create(xcb_connection_t* connection);
    ZSharedPixels(const ZSharedPixels&) = delete;
    ZSharedPixels& operator=(const ZSharedPixels&) = delete;
    ~ZSharedPixels();

    /// Returns memory for count pixels, at most kCapacity, to be written and sent by Put before the
    /// next Reserve. Waits for the server whenever all memory was used once.
    [[nodiscard]] std::span<std::uint32_t> Reserve(std::size_t count);
    /// Has the server copy the pixels of the last Reserve to a rectangle of a window.
    void Put(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
             const xcb_rectangle_t& rect) const;

private:
    ZSharedPixels(xcb_connection_t* connection, std::span<std::uint32_t> memory, xcb_shm_seg_t id);

    xcb_connection_t* const mConnection;
    const std::span<std::uint32_t> mMemory;
    const xcb_shm_seg_t mId;
    std::size_t mBegin = 0;  // of the last piece, in pixels
    std::size_t mEnd = 0;
};

}  // namespace orvane

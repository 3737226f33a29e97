// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstddef>
#include <string>

namespace orvane
{

/// One instance of the plug-in behind one of its interfaces, in a host of many threads. All is of
/// the main thread but Run.
class Guest
{
public:
    static constexpr std::size_t kBlock = 256;  // frames
    using Block = std::array<float, kBlock>;

    Guest() = default;
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;
    virtual ~Guest() = default;

    /// Runs a block in place. [audio thread, while the host's other threads leave it running]
    virtual void Run(Block& left, Block& right) = 0;
    /// Sets the key, 0 to 11, which blocks that follow take. Other threads may run blocks.
    virtual void SetKey(int key) = 0;
    /// Saves the current program as text. Other threads may run blocks.
    [[nodiscard]] virtual std::string Save() = 0;
    /// Restores one. No block runs.
    [[nodiscard]] virtual bool Load(const std::string& text) = 0;
    /// Puts the window into one of the host's, gives it time, and takes it away. Other threads may
    /// run blocks.
    [[nodiscard]] virtual bool Show(xcb_window_t parent) = 0;
    virtual void Idle() = 0;
    virtual void Hide() = 0;
};

}  // namespace orvane

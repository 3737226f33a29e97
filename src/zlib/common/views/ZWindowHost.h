// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

namespace orvane
{

/// The host around a window, which holds the window of the system that the window stands in. Each
/// plug-in interface implements it by its own means.
class ZWindowHost
{
public:
    virtual ~ZWindowHost() = default;

    /// Asks the host to make room for a window of that size in pixels, with the interface lock
    /// given up, so that the window may be gone when the call returns. Returns false when the host
    /// refuses. [interface thread, or any other but the audio thread under the interface lock]
    virtual bool ResizeWindow(const ZPoint& size) = 0;
};

}  // namespace orvane

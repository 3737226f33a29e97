// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZHandler.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace orvane
{

class ZApp;
class ZWindow;

/// What an application needs of its window manager, whose class belongs to a higher row: it handles
/// the messages about documents and dialogs, and knows the current window. [interface thread]
class ZWindowKeeper : public ZHandler
{
public:
    /// Creates a window manager for the application from a `windowmanager`.
    using Maker = std::unique_ptr<ZWindowKeeper> (*)(const boost::shared_ptr<ZXMLElement>& xml,
                                                     ZApp* app);

    using ZHandler::ZHandler;

    /// Sets the function that creates window managers and returns the previous one; null for none.
    /// [library load; tests]
    static Maker SetMaker(Maker maker);
    /// Creates a window manager; null when no maker is set. Throws what the maker throws. [setup]
    [[nodiscard]] static std::unique_ptr<ZWindowKeeper>
    Make(const boost::shared_ptr<ZXMLElement>& xml, ZApp* app);

    /// Returns the current window, or null when there is none.
    [[nodiscard]] virtual boost::shared_ptr<ZWindow> GetCurrentWindow() const = 0;
    /// Returns the system's number of the top-level window around a window, which is the host's
    /// around an editor. The window is given by its number; any other number means the current
    /// window. 0 when no window is open, as here.
    [[nodiscard]] virtual std::int32_t GetTopLevel(std::int32_t /*window*/) const { return 0; }
    /// Returns the device scale of a window that is given in the same way; 1 when there is none.
    [[nodiscard]] virtual double GetScale(std::int32_t /*window*/) const { return 1.0; }
};

}  // namespace orvane

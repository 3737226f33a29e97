// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace orvane
{

/// The clipboard of the desktop, as far as it holds text in UTF-8. The system's belongs to a higher
/// row, which sets it when the library is loaded; tests set one of their own.
/// [interface thread, under the interface lock]
class ZClipboard
{
public:
    ZClipboard() = default;
    ZClipboard(const ZClipboard&) = delete;
    ZClipboard& operator=(const ZClipboard&) = delete;
    virtual ~ZClipboard() = default;

    /// Offers a text to all programs. Returns false when there is no display.
    [[nodiscard]] virtual bool Write(const std::string& text) = 0;
    /// Returns the text; nothing when the clipboard is empty, holds no text or does not answer.
    /// Waits for the program that has copied it, with the interface lock given up, in a modal run
    /// of the owner (see ZEventLoop::EndModalRuns).
    [[nodiscard]] virtual std::optional<std::string> Read(const void* owner) = 0;

    /// Returns the clipboard; null where none is linked.
    [[nodiscard]] static ZClipboard* Get();
    /// Replaces it and returns the one before; neither is owned. [library load; tests]
    static ZClipboard* Set(ZClipboard* clipboard);
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orvane
{

/// The settings of a file dialog: a plain record.
struct ZFileRequest
{
    enum Purpose
    {
        kOpen,
        kSave,
    };

    Purpose purpose = kOpen;
    ZString prompt;               // a line of text above the files, where the dialog has one
    ZString title;                // of the dialog's window
    ZFiletypes types;             // the filters, the first one preselected
    std::int32_t window = 0;      // the window that the command came from; 0 for none
    const void* owner = nullptr;  // of the modal run, see ZEventLoop::EndModalRuns
};

/// Shows file dialogs: those of the desktop, or a replacement in tests.
class ZFileChooser
{
public:
    /// Returns the full path, or no value when the user cancels.
    using Presenter = std::function<std::optional<std::string>(const ZFileRequest& request)>;

    /// Shows a dialog and returns the chosen path; no value when the user cancels. Runs modally on
    /// the interface thread, gives up the interface lock and serves other events meanwhile. Returns
    /// no value at once on any other thread, since no host waits for a dialog. A second dialog
    /// while one is open, and a desktop without dialogs, are reported in a message box.
    /// [any thread but the audio thread]
    [[nodiscard]] static std::optional<std::string> Choose(const ZFileRequest& request);
    /// Replaces the desktop's dialog and returns the previous replacement; an empty one restores
    /// the desktop's. [tests, before any dialog is open]
    static Presenter SetPresenter(Presenter presenter);

    /// Return the label of a filter, for example "Text file (*.txt)", and its pattern, "*.txt".
    [[nodiscard]] static std::string FilterName(const ZFiletype& type);
    [[nodiscard]] static std::string FilterPattern(const ZFiletype& type);

private:
    /// Runs the desktop's dialog; implemented per platform. [interface thread]
    [[nodiscard]] static std::optional<std::string> AskDesktop(const ZFileRequest& request);
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace orvane
{

class ZFile;

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
    double scale = 1.0;           // pixels on the side of a unit, for a dialog of ours
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
    /// while one is open, and a process without a display, are reported in a message box.
    /// [any thread but the audio thread]
    [[nodiscard]] static std::optional<std::string> Choose(const ZFileRequest& request);
    /// Returns the chosen file, not yet opened; null when the user cancels. A name to save under
    /// that fits none of the types gets the extension of the first. A name that cannot be used is
    /// reported in a message box titled "File Error", and the result is null. As Choose.
    [[nodiscard]] static boost::shared_ptr<ZFile> ChooseFile(const ZFileRequest& request);
    /// Returns the file of a path, with its name and extension.
    [[nodiscard]] static boost::shared_ptr<ZFile> MakeFile(const std::filesystem::path& path);
    /// Replaces the desktop's dialog and returns the previous replacement; an empty one restores
    /// the desktop's. [tests, before any dialog is open]
    static Presenter SetPresenter(Presenter presenter);

    /// Shows a file dialog of our own on the interface thread; no value when the user cancels.
    using PlainDialog = std::optional<std::string> (*)(const ZFileRequest& request);
    /// Sets the dialog for desktops without one and returns the previous one; null for none. Its
    /// class belongs to a higher row. [library load; tests]
    static PlainDialog SetPlainDialog(PlainDialog dialog);

    /// Returns the window's title: the title, with the prompt behind it where it says more, since
    /// the desktop's dialogs have no other place for it.
    [[nodiscard]] static std::string WindowTitle(const ZFileRequest& request);
    /// Return the label of a filter, for example "Text file (*.txt)", and its pattern, "*.txt".
    [[nodiscard]] static std::string FilterName(const ZFiletype& type);
    [[nodiscard]] static std::string FilterPattern(const ZFiletype& type);

private:
    /// Runs the desktop's dialog, and where it has none the plain one; implemented per platform.
    /// [interface thread]
    [[nodiscard]] static std::optional<std::string> AskDesktop(const ZFileRequest& request);
    [[nodiscard]] static std::optional<std::string> AskPlainly(const ZFileRequest& request);
};

}  // namespace orvane

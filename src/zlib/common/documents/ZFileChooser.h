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

/// What a user is asked to choose a file for: a plain record.
struct ZFileRequest
{
    enum Purpose
    {
        kOpen,
        kSave,
    };

    Purpose purpose = kOpen;
    ZString prompt;  // what is asked, for a chooser that has room for it
    ZString title;
    ZFiletypes types;             // the first is offered
    std::int32_t window = 0;      // that the command came from; 0 for none
    const void* owner = nullptr;  // who must not go meanwhile, see ZEventLoop::EndModalRuns
};

/// The way to the user's files: the desktop's own file chooser, or what a test puts in its place.
class ZFileChooser
{
public:
    /// The whole path, or none when the user has chosen none.
    using Presenter = std::function<std::optional<std::string>(const ZFileRequest& request)>;

    /// Asks the user; modal on the interface thread, whose events are served meanwhile and whose
    /// lock is given up. None at once on any other thread, since no host waits for a dialog. While
    /// a chooser is open, and where the desktop has none, a box says so. [any thread but the audio
    /// thread]
    [[nodiscard]] static std::optional<std::string> Choose(const ZFileRequest& request);
    /// Replaces the desktop's chooser and gives back what was in its place; an empty one means the
    /// desktop's. [before others use it]
    static Presenter SetPresenter(Presenter presenter);

    /// The words for a kind of file, as in "Text file (*.txt)", and its pattern, as in "*.txt".
    [[nodiscard]] static std::string FilterName(const ZFiletype& type);
    [[nodiscard]] static std::string FilterPattern(const ZFiletype& type);

private:
    /// The platform's half.
    [[nodiscard]] static std::optional<std::string> AskDesktop(const ZFileRequest& request);
};

}  // namespace orvane

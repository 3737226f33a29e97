// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <functional>

namespace orvane
{

/// The one way to the user's eye for what went wrong. What a box looks like is the platform's
/// business: it installs a modal presenter, and tests install a recorder. Where nobody shows a box
/// it is one line on standard error, so nothing ever waits on a box where there is no display.
class ZMessageBox
{
public:
    /// What the box is about. Numbers that the table does not name are errors.
    enum Kind : int
    {
        kInformation = 0,
        kWarning = 1,
        kNotice = 2,  // information too
        kError = 3,
    };

    /// Takes the box on the thread that raises it.
    using Presenter = std::function<void(Kind kind, const ZString& title, const ZString& text)>;
    /// Shows the box on the interface thread and returns when it is closed. False when it cannot,
    /// for want of a display.
    using ModalPresenter =
        std::function<bool(Kind kind, const ZString& title, const ZString& text)>;

    /// Shows the box: through the presenter where there is one, else through the modal presenter
    /// while an interface thread runs. The box is modal when it is raised on the interface thread;
    /// any other thread hands it over and goes on. A text that is on show, or on its way to be, is
    /// not shown a second time. [any thread but the audio thread]
    static void Show(Kind kind, const ZString& title, const ZString& text);

    /// Replaces the presenter and gives back the one before; an empty one means the modal
    /// presenter. [any thread but the audio thread]
    static Presenter SetPresenter(Presenter presenter);
    /// Likewise for the modal presenter; an empty one means standard error.
    static ModalPresenter SetModalPresenter(ModalPresenter presenter);
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <functional>

namespace orvane
{

/// Shows failures and other news to the user. The platform installs a modal presenter, which draws
/// the box; tests install a recorder. Without either, a box becomes one line on standard error, so
/// that no caller waits for a user where there is no display.
class ZMessageBox
{
public:
    /// The kind of a box. Any other number is an error.
    enum Kind : int
    {
        kInformation = 0,
        kWarning = 1,
        kNotice = 2,  // shown as information
        kError = 3,
    };

    /// Receives every box, on the thread that shows it.
    using Presenter = std::function<void(Kind kind, const ZString& title, const ZString& text)>;
    /// Shows the box on the interface thread and returns when the user has closed it. Returns false
    /// when there is no display.
    using ModalPresenter =
        std::function<bool(Kind kind, const ZString& title, const ZString& text)>;

    /// Shows the box through the presenter, else through the modal presenter while an interface
    /// thread runs. On the interface thread the call returns when the user has closed the box. Any
    /// other thread hands the box over to that thread and does not wait. A text that is shown, or
    /// is queued to be shown, is not shown a second time. [any thread but the audio thread]
    static void Show(Kind kind, const ZString& title, const ZString& text);

    /// Replaces the presenter and returns the previous one. An empty presenter leaves the boxes to
    /// the modal presenter. [any thread but the audio thread]
    static Presenter SetPresenter(Presenter presenter);
    /// The same for the modal presenter. An empty one leaves the boxes to standard error. [any
    /// thread but the audio thread]
    static ModalPresenter SetModalPresenter(ModalPresenter presenter);
};

}  // namespace orvane

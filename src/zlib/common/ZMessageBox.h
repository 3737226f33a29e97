#pragma once

#include "zlib/common/ZString.h"

#include <functional>

namespace orvane
{

/// The one way to the user's eye for what went wrong. What a box looks like is the platform's
/// business: a presenter is installed, and tests install a recorder. With none installed a box is
/// one line on standard error, so nothing ever waits on a box where there is no display.
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

    using Presenter = std::function<void(Kind kind, const ZString& title, const ZString& text)>;

    /// Shows the box through the presenter in force. [any thread but the audio thread]
    /// A text that is on show already is not shown a second time.
    static void Show(Kind kind, const ZString& title, const ZString& text);

    /// Replaces the presenter and gives back the one before; an empty one means standard error.
    /// [any thread but the audio thread]
    static Presenter SetPresenter(Presenter presenter);
};

}  // namespace orvane

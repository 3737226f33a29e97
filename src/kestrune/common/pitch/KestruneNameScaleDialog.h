// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <functional>

namespace orvane
{

class ZApplication;

/// Asks the user for the name of a custom scale. The dialog's window belongs to a higher row, so a
/// function that runs it is set here: the product's views set theirs, tests another one. Without
/// such a function or without a display the dialog counts as cancelled. [interface thread]
class KestruneNameScaleDialog
{
public:
    /// Runs the dialog of the resource with name in its field until the user ends it. Returns true
    /// on OK, with the field's text in name; false on Cancel and when the application ends.
    using Runner =
        std::function<bool(ZApplication* application, const ZString& resourceName, ZString& name)>;

    /// Offers scaleName, the name of the scale that was edited, followed by " (copy)". application
    /// is the one that the dialog belongs to, or null.
    KestruneNameScaleDialog(ZApplication* application, const ZString& resourceName,
                            const ZString& scaleName);

    /// Runs the dialog. Returns true if the user presses OK; the name is then the user's, cut to
    /// kMaxNameUnits.
    [[nodiscard]] bool Run();
    [[nodiscard]] const ZString& GetName() const { return mName; }

    /// Sets the function that runs the dialog and returns the previous one; with an empty function
    /// Run returns false. [interface thread, or setup]
    static Runner SetRunner(Runner runner);

    static constexpr std::int32_t kMaxNameUnits = 256;  // UTF-16 code units, as in the window

private:
    ZApplication* mApplication;
    ZString mResourceName;
    ZString mName;
};

}  // namespace orvane

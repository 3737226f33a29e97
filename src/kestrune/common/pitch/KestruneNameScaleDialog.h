// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <functional>

namespace orvane
{

class ZApplication;

/// Asks the user for the name of a custom scale. The views of the product set the
/// runner that shows their window; tests put one of their own in its place. Without a runner, and
/// where there is no display the dialog counts as cancelled: nothing ever waits for an answer that
/// cannot come. [interface thread]
class KestruneNameScaleDialog
{
public:
    /// Shows the dialog of that resource with the name in its field until the user ends it. On OK
    /// true, with the field's text as the name; on Cancel, and when the application ends it, false.
    using Runner =
        std::function<bool(ZApplication* application, const ZString& resourceName, ZString& name)>;

    /// The name to begin with is that of the scale that was edited, and says that this is a copy.
    /// The application, which may be null, is the one that the dialog belongs to.
    KestruneNameScaleDialog(ZApplication* application, const ZString& resourceName,
                            const ZString& scaleName);

    /// Whether the user says OK; the name is then the user's, of kMaxNameUnits at most.
    [[nodiscard]] bool Run();
    [[nodiscard]] const ZString& GetName() const { return mName; }

    /// Replaces the runner and gives back the one before; with an empty one Run answers Cancel.
    /// [interface thread, or setup]
    static Runner SetRunner(Runner runner);

    static constexpr std::int32_t kMaxNameUnits = 256;

private:
    ZApplication* mApplication;
    ZString mResourceName;
    ZString mName;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZApplication;
class ZString;

/// The dialog that asks for the name of a custom scale.
class KestruneNameScaleWindow
{
public:
    /// Shows the dialog above the application's window with name in its text field. Returns true
    /// with the text that the user has accepted in name; false if the user cancels, and at once
    /// without a display. Throws ZException if the resource does not describe a dialog. This is the
    /// default KestruneNameScaleDialog::Runner. [interface thread]
    [[nodiscard]] static bool Run(ZApplication* application, const ZString& resourceName,
                                  ZString& name);
};

}  // namespace orvane

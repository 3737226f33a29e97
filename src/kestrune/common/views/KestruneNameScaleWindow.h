// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZApplication;
class ZString;

/// The window that asks for the name of a custom scale.
class KestruneNameScaleWindow
{
public:
    /// A KestruneNameScaleDialog::Runner, and the one in force where there is no other: shows the
    /// dialog above the application's window. False at once where there is no display. Throws
    /// ZException when the resource is none of a dialog. [interface thread]
    [[nodiscard]] static bool Run(ZApplication* application, const ZString& resourceName,
                                  ZString& name);
};

}  // namespace orvane

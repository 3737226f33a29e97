// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZString.h"

#include <optional>

namespace orvane
{

class ZApp;
class ZWindow;

/// The dialog in which the user types a value, with or without a unit. [interface thread]
class ZValueDialog
{
public:
    /// What the dialog asks for.
    struct Request
    {
        ZString name;  // of the value, above the field
        ZElement::Units units = ZElement::kGeneric;
        float min = 0.0f;
        float max = 0.0f;
        float value = 0.0f;  // in the field at first
    };

    /// Shows the dialog above parent, which may be null, until the user has entered a number from
    /// min to max and returns it; nothing when the user cancels, and at once without a display. The
    /// application still exists at the return, the window perhaps not. Throws ZException if the
    /// resource "EnterValue" does not describe the dialog.
    [[nodiscard]] static std::optional<float> Ask(ZApp& app, ZWindow* parent,
                                                  const Request& request);
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <string>

namespace orvane
{

/// The user's own settings of one application: 32-bit values by name. They stand as lines of
/// name=value in "Orvane/<identifier>.conf" in the user's settings folder, which is read anew for
/// each value. Lines that are none are passed over, and stay.
/// The file is always a whole one, whoever writes it; of two who write at once the last wins.
/// No state but the path: [any thread but the audio thread]
class ZUserSettings
{
public:
    /// A user without a home has no settings.
    explicit ZUserSettings(const ZString& identifier);

    /// Stores the value on the disk. False when it cannot be, and for a name that is empty or holds
    /// a line break.
    [[nodiscard]] bool SetInt(const ZString& name, std::int32_t value) const;
    /// False, with out as it was, unless there is a value of that name and it is a 32-bit integer.
    [[nodiscard]] bool GetInt(const ZString& name, std::int32_t& out) const;

private:
    std::string mPath;  // empty for a user without a home
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <string>

namespace orvane
{

/// The user's settings of one application: 32-bit values by name. The file
/// "Orvane/<identifier>.conf" in the user's settings folder holds a line name=value for each, and
/// is read again for each request. Any other line is skipped and kept. The file is replaced as a
/// whole, and writers take turns by a lock file beside it, so that none loses another's value. The
/// object only holds the path. [any thread but the audio thread]
class ZUserSettings
{
public:
    /// A user without a home folder has no settings.
    explicit ZUserSettings(const ZString& identifier);

    /// Stores the value on the disk. Returns false on a failure and for a name that is empty or has
    /// a line break.
    [[nodiscard]] bool SetInt(const ZString& name, std::int32_t value) const;
    /// Gives the value of a name. Returns false, with out unchanged, when there is none or it is no
    /// 32-bit integer.
    [[nodiscard]] bool GetInt(const ZString& name, std::int32_t& out) const;

private:
    std::string mPath;  // empty for a user without a home
};

}  // namespace orvane

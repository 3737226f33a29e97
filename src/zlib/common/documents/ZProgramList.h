// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <optional>

namespace orvane
{

/// The programs of a plug-in, as a window shows them; the shells of the plug-in own them.
/// [interface thread, or host thread under the interface lock]
class ZProgramList
{
public:
    ZProgramList() = default;
    ZProgramList(const ZProgramList&) = delete;
    ZProgramList& operator=(const ZProgramList&) = delete;
    virtual ~ZProgramList() = default;

    [[nodiscard]] virtual std::int32_t GetCount() const = 0;
    [[nodiscard]] virtual std::int32_t GetCurrent() const = 0;
    /// Returns the name of a program; nothing for one without a name or an index out of range.
    [[nodiscard]] virtual std::optional<ZString> GetName(std::int32_t index) const = 0;
    /// Stores the document's state in the current program, then loads another; ignores an index out
    /// of range. Throws what the load throws, with the state unchanged.
    virtual void SetCurrent(std::int32_t index) = 0;
};

}  // namespace orvane

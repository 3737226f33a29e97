// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZException.h"

#include <fmt/format.h>

#include <utility>

namespace orvane
{

/// Throws a ZException with the formatted text. The program prints such a text as one line on
/// standard error and exits with status 2. [any thread]
template <typename... Parts>
[[noreturn]] void fail(fmt::format_string<Parts...> text, Parts&&... parts)
{
    throw ZException(fmt::format(text, std::forward<Parts>(parts)...));
}

}  // namespace orvane

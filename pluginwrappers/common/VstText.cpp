// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/VstText.h"

#include <cassert>
#include <cstring>
#include <string_view>

namespace orvane
{

void writeHostText(const ZString& text, std::span<char> buffer)
{
    if (!buffer.empty() && !text.ToCString(buffer))
        buffer.front() = '\0';
}

ZString readHostText(const char* text, std::size_t maxBytes)
{
    assert(text != nullptr);
    return std::string_view(text, ::strnlen(text, maxBytes));
}

}  // namespace orvane

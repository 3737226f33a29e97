// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/VstText.h"

#include <cstring>
#include <string_view>

namespace orvane
{

void writeHostText(const ZString& text, std::span<char> room)
{
    if (!room.empty() && !text.ToCString(room))
        room.front() = '\0';
}

ZString readHostText(const char* text, std::size_t maxBytes)
{
    return std::string_view(text, ::strnlen(text, maxBytes));
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Messages.h"

#include "tools/render/Failure.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace orvane
{

std::string oneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char byte) { return byte < ' ' || byte == 0x7F; },
        ' ');
    return text;
}

void printFailure(std::string_view message)
{
    fmt::print(stderr, "kestrune-render: {}\n", oneLine(std::string(message)));
}

void printNote(std::string_view message)
{
    fmt::print(stderr, "kestrune-render: note: {}\n", oneLine(std::string(message)));
}

void printText(const std::string& text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        fail("cannot print the report: {}", std::strerror(errno));
}

}  // namespace orvane

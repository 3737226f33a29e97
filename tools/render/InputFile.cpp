// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/InputFile.h"

#include "tools/render/Failure.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace orvane
{

namespace
{

constexpr std::size_t kLongest = 16u << 20;

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void refuse(const std::filesystem::path& path, std::string_view reason)
{
    fail("cannot read {}: {}", path.string(), reason);
}

}  // namespace

std::string readInputFile(const std::filesystem::path& path)
{
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file)
        refuse(path, std::strerror(errno));
    std::string bytes;
    std::array<char, 65536> piece{};
    // Read until the end instead of asking for the size: the file may be a pipe.
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get())) {
        bytes.append(piece.data(), count);
        if (bytes.size() > kLongest)
            refuse(path, "it is longer than 16 MB");
    }
    if (std::ferror(file.get()))
        refuse(path, std::strerror(errno));
    return bytes;
}

}  // namespace orvane

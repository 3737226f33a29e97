// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace orvane
{

/// A growing sequence of bytes for a font file, which stores integers with the highest byte first.
class BigEndianBytes
{
public:
    void add8(unsigned value) { mBytes.push_back(static_cast<std::uint8_t>(value)); }
    /// Adds a number in [-65535, 65535] modulo 65536, so a negative one as its two's complement.
    void add16(int value)
    {
        assert(value >= -0xFFFF && value <= 0xFFFF);
        add8(static_cast<unsigned>(value) >> 8);
        add8(static_cast<unsigned>(value));
    }
    void add16(std::initializer_list<int> values)
    {
        for (const int value : values)
            add16(value);
    }
    void add32(std::uint32_t value)
    {
        add16(static_cast<int>(value >> 16));
        add16(static_cast<int>(value & 0xFFFF));
    }
    void addText(std::string_view text) { mBytes.insert(mBytes.end(), text.begin(), text.end()); }
    void add(std::span<const std::uint8_t> bytes)
    {
        mBytes.insert(mBytes.end(), bytes.begin(), bytes.end());
    }
    /// Pads with zeros to a multiple of 4 bytes, the unit of tables and checksums.
    void align() { mBytes.resize((mBytes.size() + 3) / 4 * 4); }

    [[nodiscard]] std::size_t size() const { return mBytes.size(); }
    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return mBytes; }

private:
    std::vector<std::uint8_t> mBytes;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

namespace orvane
{

/// A random index below count.
inline std::size_t pick(std::mt19937& random, std::size_t count)
{
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

/// Alters a text, which is not empty, in one place: by a character with a meaning in XML, by a gap
/// or by a copy of a part of the text.
inline void mutate(std::string& text, std::mt19937& random)
{
    static const std::string odd("<>/=\" \0!-?\xFF", 11);
    const std::size_t position = pick(random, text.size());
    switch (pick(random, 4)) {
    case 0:
        text[position] = odd[pick(random, odd.size())];
        break;
    case 1:
        text.insert(position, 1, odd[pick(random, odd.size())]);
        break;
    case 2:
        text.erase(position, 1 + pick(random, 20));
        text += ' ';
        break;
    default:
        text.insert(position, std::string(text, pick(random, text.size()), 1 + pick(random, 40)));
    }
}

}  // namespace orvane

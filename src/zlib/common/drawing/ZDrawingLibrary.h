// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

namespace orvane
{

class ZString;

/// Counts the users of what all drawing in the library shares: the installed and the private fonts.
/// Each application holds one ZDrawingLibrary from before its first drawing to after its last. When
/// the last one is destroyed the private fonts are forgotten, and the shared library may then be
/// unloaded. [any thread but the audio thread]
class ZDrawingLibrary
{
public:
    ZDrawingLibrary();
    ZDrawingLibrary(const ZDrawingLibrary&) = delete;
    ZDrawingLibrary& operator=(const ZDrawingLibrary&) = delete;
    ~ZDrawingLibrary();
};

/// Adds the fonts of a file to those that a typeface can name, in this library only: neither the
/// host nor another plug-in sees them. Ignores a file that is missing or holds no font; does not
/// read again a file that was added before. [any thread but the audio thread]
void AddPrivateFont(const ZString& path);

/// Adds the fonts in the bytes of a font file, which are copied.
/// [any thread but the audio thread]
void AddPrivateFont(std::span<const std::byte> font);

}  // namespace orvane

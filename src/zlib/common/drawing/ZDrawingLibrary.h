// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>

namespace orvane
{

class ZString;

/// Keeps what drawing shares in a library: the fonts, installed and private. Each application holds
/// one from before its first drawing to after its last. With the last one the private fonts are
/// forgotten, and the library may be unloaded: the fonts in use are left to the process, which
/// gives them to the next one. [any thread but the audio thread]
class ZDrawingLibrary
{
public:
    ZDrawingLibrary();
    ZDrawingLibrary(const ZDrawingLibrary&) = delete;
    ZDrawingLibrary& operator=(const ZDrawingLibrary&) = delete;
    ~ZDrawingLibrary();
};

/// Adds the fonts of a file to those that texts can name, for this library alone: neither the host
/// nor another plug-in sees them. A file that is missing or holds no font is passed over, and one
/// that was added before is not read again. [any thread but the audio thread]
void AddPrivateFont(const ZString& path);

/// The same for the bytes of a font file, which are copied.
void AddPrivateFont(std::span<const std::byte> font);

}  // namespace orvane

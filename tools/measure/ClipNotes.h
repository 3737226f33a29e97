// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/Song.h"

#include <filesystem>
#include <vector>

namespace orvane
{

/// A note of a clip as it was meant: its time in the clip and its pitch.
struct ClipNote
{
    double startSeconds;
    double endSeconds;
    double intendedHz;
    double sungCents;  ///< sung minus intended
};

std::vector<ClipNote> clipNotes(const Song& song);

/// JSON with one object a note in an array "notes"; its members are named as those of ClipNote.
/// Both throw std::runtime_error that names the file; reading, also for what is not such a list.
void writeClipNotes(const std::filesystem::path& path, const std::vector<ClipNote>& notes);
std::vector<ClipNote> readClipNotes(const std::filesystem::path& path);

}  // namespace orvane

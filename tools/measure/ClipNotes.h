// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/singer/Song.h"

#include <filesystem>
#include <vector>

namespace orvane
{

/// The intended pitch of a note and its time in a clip.
struct ClipNote
{
    double startSeconds;
    double endSeconds;
    double intendedHz;
    double sungCents;  // sung minus intended
};

/// The notes of a song in their order.
std::vector<ClipNote> clipNotes(const Song& song);

/// Writes and reads JSON: an array "notes" of objects with the members of ClipNote. Both throw
/// std::runtime_error that names the file; readClipNotes also for a file without such a list or
/// with an empty one.
void writeClipNotes(const std::filesystem::path& path, const std::vector<ClipNote>& notes);
std::vector<ClipNote> readClipNotes(const std::filesystem::path& path);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/SoundFile.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace orvane
{

/// The output format for the --format option: "KIND" or "KIND:ENCODING", such as "flac" or
/// "wav:24". Rate and channels are those of input. Without an encoding it keeps that of the input
/// where the kind has it, else it takes 24 bits for an input of more than 16 bits and 16 bits for
/// others. Throws ZException that tells the valid words, or that the kind does not support the rate
/// or encoding.
[[nodiscard]] SoundFormat parseFormat(std::string_view text, const SoundFormat& input);

/// Throws ZException unless parseFormat knows the words of text. For checks before any input is
/// open.
void requireFormatWords(std::string_view text);

/// Ending of the kind that the --format option names, such as ".flac".
[[nodiscard]] std::string endingOfFormat(std::string_view text);

/// The kinds and encodings of --format, for --help.
[[nodiscard]] std::string formatsHelp();

/// Throws ZException when the ending of path belongs to another container than that of format.
void requireFittingName(const std::filesystem::path& path, const SoundFormat& format);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/SoundFormats.h"

#include "tools/render/Failure.h"
#include "tools/render/RenderSettings.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace orvane
{

namespace
{

struct FormatKind
{
    std::string_view name;
    int container;
    int encoding;  // the only one of a lossy kind; 0 for kinds with a choice
};
constexpr std::array<FormatKind, 8> kKinds{{
    {"wav", SF_FORMAT_WAV, 0},
    {"flac", SF_FORMAT_FLAC, 0},
    {"aiff", SF_FORMAT_AIFF, 0},
    {"caf", SF_FORMAT_CAF, 0},
    {"au", SF_FORMAT_AU, 0},
    {"ogg", SF_FORMAT_OGG, SF_FORMAT_VORBIS},
    {"opus", SF_FORMAT_OGG, SF_FORMAT_OPUS},
    {"mp3", SF_FORMAT_MPEG, SF_FORMAT_MPEG_LAYER_III},
}};

struct FormatEncoding
{
    std::string_view name;
    int encoding;
};
constexpr std::array<FormatEncoding, 4> kEncodings{{{"16", SF_FORMAT_PCM_16},
                                                    {"24", SF_FORMAT_PCM_24},
                                                    {"32", SF_FORMAT_PCM_32},
                                                    {"float", SF_FORMAT_FLOAT}}};

struct NameEnding
{
    std::string_view ending;
    std::array<int, 3> containers;  // unused entries are 0
};
constexpr std::array<NameEnding, 10> kNameEndings{{
    {".wav", {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_RF64}},
    {".flac", {SF_FORMAT_FLAC}},
    {".ogg", {SF_FORMAT_OGG}},
    {".oga", {SF_FORMAT_OGG}},
    {".opus", {SF_FORMAT_OGG}},
    {".mp3", {SF_FORMAT_MPEG}},
    {".aif", {SF_FORMAT_AIFF}},
    {".aiff", {SF_FORMAT_AIFF}},
    {".au", {SF_FORMAT_AU}},
    {".caf", {SF_FORMAT_CAF}},
}};

struct FormatWords
{
    const FormatKind* kind;
    std::optional<int> encoding;
};

template <typename Row, std::size_t count>
const Row* findRow(const std::array<Row, count>& rows, std::string_view name)
{
    const auto found = std::find_if(rows.begin(), rows.end(), [name](const Row& row) {
        return equalWithoutCase(row.name, name);
    });
    return found == rows.end() ? nullptr : &*found;
}

FormatWords parseWords(std::string_view text)
{
    const std::size_t colon = text.find(':');
    FormatWords words{findRow(kKinds, text.substr(0, colon)), std::nullopt};
    if (!words.kind)
        fail("there is no format '{}': --format takes {}", text, formatsHelp());
    if (colon == std::string_view::npos)
        return words;
    const FormatEncoding* const encoding = findRow(kEncodings, text.substr(colon + 1));
    if (!encoding || words.kind->encoding != 0)
        fail("there is no format '{}': --format takes {}", text, formatsHelp());
    words.encoding = encoding->encoding;
    return words;
}

bool canBeWritten(const SoundFormat& format)
{
    SF_INFO info{};
    info.samplerate = format.rate;
    info.channels = format.channels;
    info.format = format.code;
    return sf_format_check(&info) != 0;
}

/// The encoding for a container when the user chose none.
int defaultEncoding(int container, const SoundFormat& input)
{
    const int encoding = input.code & SF_FORMAT_SUBMASK;
    if (canBeWritten({input.rate, input.channels, container | encoding}))
        return encoding;
    switch (encoding) {
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
        return SF_FORMAT_PCM_24;
    default:
        return SF_FORMAT_PCM_16;
    }
}

}  // namespace

SoundFormat parseFormat(std::string_view text, const SoundFormat& input)
{
    const FormatWords words = parseWords(text);
    SoundFormat format = input;
    const int encoding =
        words.kind->encoding != 0
            ? words.kind->encoding
            : words.encoding.value_or(defaultEncoding(words.kind->container, input));
    format.code = words.kind->container | encoding;
    if (!canBeWritten(format))
        fail("format {} does not support {}: choose another by --format", text,
             format.Describe() + fmt::format(" at {} Hz", format.rate));
    return format;
}

void requireFormatWords(std::string_view text)
{
    static_cast<void>(parseWords(text));
}

std::string endingOfFormat(std::string_view text)
{
    return fmt::format(".{}", parseWords(text).kind->name);
}

std::string formatsHelp()
{
    std::vector<std::string_view> kinds;
    std::vector<std::string_view> encodings;
    for (const FormatKind& kind : kKinds)
        kinds.push_back(kind.name);
    for (const FormatEncoding& encoding : kEncodings)
        encodings.push_back(encoding.name);
    return fmt::format("{}; the first five also with :{} (bits), such as flac:24",
                       fmt::join(kinds, ", "), fmt::join(encodings, ", :"));
}

void requireFittingName(const std::filesystem::path& path, const SoundFormat& format)
{
    const std::string ending = path.extension().string();
    const auto named =
        std::find_if(kNameEndings.begin(), kNameEndings.end(),
                     [&](const NameEnding& n) { return equalWithoutCase(n.ending, ending); });
    if (named == kNameEndings.end())
        return;
    const auto& containers = named->containers;
    const int container = format.code & SF_FORMAT_TYPEMASK;
    if (std::find(containers.begin(), containers.end(), container) == containers.end())
        fail("{} is named like another format: the output is {}, as the input unless --format says "
             "otherwise",
             path.string(), format.Describe());
}

}  // namespace orvane

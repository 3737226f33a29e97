// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/measure/ClipNotes.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>
#include <stdexcept>

namespace orvane
{

namespace
{

/// Rounds to a millionth: further digits may differ between compilers.
double rounded(double value)
{
    return std::round(value * 1e6) / 1e6;
}

nlohmann::ordered_json toJson(const ClipNote& note)
{
    return {{"startSeconds", rounded(note.startSeconds)},
            {"endSeconds", rounded(note.endSeconds)},
            {"intendedHz", rounded(note.intendedHz)},
            {"sungCents", rounded(note.sungCents)}};
}

ClipNote fromJson(const nlohmann::json& note)
{
    return {note.at("startSeconds").get<double>(), note.at("endSeconds").get<double>(),
            note.at("intendedHz").get<double>(), note.at("sungCents").get<double>()};
}

}  // namespace

std::vector<ClipNote> clipNotes(const Song& song)
{
    std::vector<ClipNote> notes;
    notes.reserve(song.notes.size());
    for (const SungNote& note : song.notes)
        notes.push_back(
            {note.onsetSeconds, note.endSeconds(), note.intendedHz(), note.offKeyCents});
    return notes;
}

void writeClipNotes(const std::filesystem::path& path, const std::vector<ClipNote>& notes)
{
    auto list = nlohmann::ordered_json::array();
    for (const ClipNote& note : notes)
        list.push_back(toJson(note));
    std::ofstream file(path);
    file << nlohmann::ordered_json{{"notes", list}}.dump(2) << '\n';
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

std::vector<ClipNote> readClipNotes(const std::filesystem::path& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    try {
        std::vector<ClipNote> notes;
        const nlohmann::json document = nlohmann::json::parse(file);
        for (const nlohmann::json& note : document.at("notes"))
            notes.push_back(fromJson(note));
        if (!notes.empty())
            return notes;
    } catch (const nlohmann::json::exception&) {
        // Reported below, as an empty list is.
    }
    throw std::runtime_error(path.string() + " is not a list of notes");
}

}  // namespace orvane

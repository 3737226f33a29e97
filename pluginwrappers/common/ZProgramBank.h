// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZAudioDocument;
class ZPluginPresetsAudioDocument;
class ZXMLElement;

/// The programs of a plug-in: one for each factory preset of its document, at least one. The
/// current program is the document itself; each other one keeps the state in which it was left,
/// until then that of its preset.
///
/// A host keeps programs as text: one `VST_Program` with a `preset` in it after the other, without
/// declaration or terminator. Programs are read by their order, whatever their `Number` says.
///
/// Whoever uses it holds the interface lock. A load tells of values that may reach the host, which
/// may call back: programs are saved and loaded inside a load as well as outside.
class ZProgramBank
{
public:
    enum class Extent
    {
        kCurrent,
        kAll,
    };

    /// The document may be null, which makes a single program without content; else it outlives
    /// the bank. Nothing is loaded.
    explicit ZProgramBank(ZAudioDocument* document);

    /// Programs of the bank for a document.
    [[nodiscard]] static std::int32_t CountOf(const ZAudioDocument* document);

    [[nodiscard]] std::int32_t GetCurrent() const { return mCurrent; }
    /// Keeps the state under the program that is left, then loads the other; nothing when there is
    /// no such program. Throws as ZAudioDocument::LoadPreset, with the state as it was.
    void SetCurrent(std::int32_t index);

    /// That of the current program's preset; without presets the one that was set, "Init" at first.
    [[nodiscard]] ZString GetName() const;
    void SetName(const ZString& name) { mName = name; }
    /// The preset's name of any program; nothing without presets or for another index.
    [[nodiscard]] std::optional<ZString> GetName(std::int32_t index) const;

    /// The text of programs, with the present state as the current one; empty without a document.
    [[nodiscard]] std::string Save(Extent extent);
    /// Takes programs over, as many as have a place here, and loads the current one, also when the
    /// text of all brings none. Throws as ZAudioDocument::LoadPreset, also when the text of one
    /// brings none, with programs and state as they were.
    void Load(std::string_view text, Extent extent);

private:
    using Program = boost::shared_ptr<ZXMLElement>;
    using Programs = std::vector<Program>;

    [[nodiscard]] Program ExtractProgram() const;
    void LoadProgram(const Program& program, const Program& present);
    [[nodiscard]] Program& Current();

    ZAudioDocument* mDocument;
    const ZPluginPresetsAudioDocument* mPresets;  // the document, when it has presets
    Programs mPrograms;                           // at least one; null for one without content
    std::int32_t mCurrent = 0;
    ZString mName = "Init";
};

}  // namespace orvane

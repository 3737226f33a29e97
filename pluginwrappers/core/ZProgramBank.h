// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZProgramList.h"
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
/// document holds the state of the current program. Each other program keeps the state in which
/// the user left it, or that of its preset.
///
/// Hosts store programs as text: a sequence of `VST_Program` elements, each with a `preset` in it,
/// without declaration or terminator. Programs are read in their order; their `Number` is ignored.
///
/// Callers hold the interface lock. A load can notify the host of parameters, and the host may call
/// back: Save, Load and SetCurrent work inside a load, too. [host thread]
class ZProgramBank : public ZProgramList
{
public:
    /// What a text contains.
    enum class Extent
    {
        kCurrent,  // the current program
        kAll,      // all programs
    };

    /// document outlives the bank. When it is null, there is one program without content. Loads
    /// nothing into the document.
    explicit ZProgramBank(ZAudioDocument* document);

    /// Returns the number of programs of a bank for document.
    [[nodiscard]] static std::int32_t CountOf(const ZAudioDocument* document);

    [[nodiscard]] std::int32_t GetCount() const override
    {
        return static_cast<std::int32_t>(mPrograms.size());
    }
    [[nodiscard]] std::int32_t GetCurrent() const override { return mCurrent; }
    /// Stores the document's state in the current program, then loads program index; ignores an
    /// index out of range. Throws what ZAudioDocument::LoadPreset throws, with the state unchanged.
    void SetCurrent(std::int32_t index) override;

    /// Returns the name of the current program's preset; without presets the name that was set,
    /// "Init" at first.
    [[nodiscard]] ZString GetName() const;
    void SetName(const ZString& name) { mName = name; }
    /// Returns the name of a program's preset; nothing without presets or for an index out of
    /// range.
    [[nodiscard]] std::optional<ZString> GetName(std::int32_t index) const override;

    /// Stores the document's state in the current program and returns the programs as text; empty
    /// without a document.
    [[nodiscard]] std::string Save(Extent extent);
    /// Replaces programs by those of the text, ignoring those beyond the last, and loads the
    /// current program, even when a text of all programs contains none. Throws what
    /// ZAudioDocument::LoadPreset throws, also for a text of the current program that contains
    /// none; programs and state are then unchanged.
    void Load(std::string_view text, Extent extent);

private:
    using Program = boost::shared_ptr<ZXMLElement>;
    using Programs = std::vector<Program>;

    [[nodiscard]] Program ExtractProgram() const;
    void LoadProgram(const Program& program, const Program& present);
    [[nodiscard]] Program& Current();

    ZAudioDocument* mDocument;
    const ZPluginPresetsAudioDocument* mPresets;  // mDocument if it has presets, else null
    Programs mPrograms;                           // at least one; null: without content
    std::int32_t mCurrent = 0;
    ZString mName = "Init";
};

}  // namespace orvane

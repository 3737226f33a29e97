// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZXMLTag.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane
{

/// The state machine that reads a tag. Only the space character separates attributes; tabs and line
/// ends are ordinary characters. A `>` ends the tag in every state, also inside quotes.
/// One thread at a time. [any thread but the audio thread]
class ZXMLTagReader
{
public:
    enum class Reading
    {
        kHeading,  // name and kind only
        kWhole,    // with attributes and trace lines
    };

    /// Empties the tag, which Read then fills.
    ZXMLTagReader(ZXMLTag& tag, Reading reading);

    /// See ZXMLTag::Read.
    std::size_t Read(std::string_view text, std::size_t position);

private:
    enum class State
    {
        kStart,
        kKind,
        kName,
        kAttributeStart,
        kAttributeName,
        kAssignment,
        kValueStart,
        kQuotedValue,
        kBareValue,
        kValueEnd,
    };

    /// Handles a character in the current state. True when the new state must handle it too.
    bool Step(char character);
    bool StepInHeading(char character);
    bool StepInAttributeName(char character);
    bool StepInValue(char character);
    bool SeekAssignment(char character);
    bool SeekValue(char character);
    bool GoTo(State state, bool again);
    void StoreAttribute();

    ZXMLTag& mTag;
    const Reading mReading;
    State mState = State::kStart;
    std::string mAttributeName;
    std::string mAttributeValue;
};

}  // namespace orvane

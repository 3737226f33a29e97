// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZXMLTagReader.h"

#include "zlib/common/objects/ZTrace.h"

#include <cassert>

namespace orvane
{

namespace
{

/// Appends a character if it fits with a terminator. Leaves out NUL, which would end the text.
void appendWithin(std::string& text, char character, std::size_t size)
{
    if (character != '\0' && text.size() + 1 < size)
        text += character;
}

bool startsBareValue(char character)
{
    return (character >= '0' && character <= '9') || character == '.';
}

}  // namespace

ZXMLTagReader::ZXMLTagReader(ZXMLTag& tag, Reading reading)
    : mTag(tag)
    , mReading(reading)
{
    mTag.mName.clear();
    mTag.mBlock.clear();
    mTag.mAttributes.clear();
    mTag.mKind = ZXMLTag::kComplete;
}

std::size_t ZXMLTagReader::Read(std::string_view text, std::size_t position)
{
    assert(position < text.size() && text[position] == '<');
    for (; position < text.size(); ++position) {
        const char character = text[position];
        if (character == '>')
            return position;
        while (Step(character)) {
        }
    }
    return 0;
}

bool ZXMLTagReader::GoTo(State state, bool again)
{
    mState = state;
    return again;
}

bool ZXMLTagReader::Step(char character)
{
    switch (mState) {
    case State::kStart:
    case State::kKind:
    case State::kName:
        return StepInHeading(character);
    case State::kAttributeStart:
    case State::kAttributeName:
        return StepInAttributeName(character);
    case State::kAssignment:
        return SeekAssignment(character);
    case State::kValueStart:
        return SeekValue(character);
    default:
        return StepInValue(character);
    }
}

bool ZXMLTagReader::StepInHeading(char character)
{
    if (mState == State::kStart) {
        const bool skipped = character == ' ' || character == '<';
        return skipped ? false : GoTo(State::kKind, true);
    }
    if (mState == State::kKind) {
        const bool closes = character == '/';
        mTag.mKind = closes ? ZXMLTag::kClosing : ZXMLTag::kOpening;
        return GoTo(State::kName, !closes);
    }
    if (character != ' ') {
        appendWithin(mTag.mName, character, ZXMLTag::kNameSize);
        return false;
    }
    if (mTag.mName.starts_with("!--"))
        mTag.mKind = ZXMLTag::kComplete;
    return GoTo(State::kAttributeStart, false);
}

bool ZXMLTagReader::StepInAttributeName(char character)
{
    if (mState == State::kAttributeStart) {
        if (character == ' ')
            return false;
        // The slash also begins an attribute name, but that attribute is never stored.
        if (character == '/')
            mTag.mKind = ZXMLTag::kComplete;
        return GoTo(State::kAttributeName, true);
    }
    if (character == ' ' || character == '=')
        return GoTo(State::kAssignment, true);
    appendWithin(mAttributeName, character, ZXMLTag::kAttributeNameSize);
    return false;
}

bool ZXMLTagReader::SeekAssignment(char character)
{
    if (character == '=')
        return GoTo(State::kValueStart, false);
    if (character != ' ' && mReading == Reading::kWhole)
        ZTrace::Write(std::string("ERROR: assignment expected in xml (") + character + " found)\n");
    return false;
}

bool ZXMLTagReader::SeekValue(char character)
{
    if (startsBareValue(character))
        return GoTo(State::kBareValue, true);
    if (character == '"')
        return GoTo(State::kQuotedValue, false);
    if (character != '/')
        return false;
    if (mReading == Reading::kWhole)
        ZTrace::Write("ERROR: Value expected, tag termination found\n");
    return GoTo(State::kQuotedValue, false);
}

bool ZXMLTagReader::StepInValue(char character)
{
    if (mState == State::kValueEnd) {
        StoreAttribute();
        return GoTo(State::kAttributeStart, character == '/');
    }
    const bool quoted = mState == State::kQuotedValue;
    const bool ends = quoted ? character == '"' : character == ' ' || character == '/';
    if (ends)
        return GoTo(State::kValueEnd, true);
    if (mReading == Reading::kWhole)
        appendWithin(mAttributeValue, character, ZXMLTag::kAttributeValueSize);
    return false;
}

void ZXMLTagReader::StoreAttribute()
{
    if (mReading == Reading::kWhole)
        mTag.AddAttribute(mAttributeName, mAttributeValue);
    mAttributeName.clear();
    mAttributeValue.clear();
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <optional>
#include <string_view>

namespace orvane
{

class ZElement;

// The host's view of an element: a value from 0 to 1 and a text. The range from 0 to 1 covers the
// list of values of a discrete element, or the interval from Min() to Max() of a float element.

/// Returns the element's value for the host, from 0 to 1 even when the element is out of its range.
/// Returns 0 for an element that is neither discrete nor float, or that has a single value.
/// [any thread, audio thread included]
[[nodiscard]] float hostValueOf(const ZElement& element) noexcept;
/// Stores a value that the host has set and marks the element as changed by the host. The value is
/// limited to 0..1; NaN is ignored. A discrete element takes the choice whose value is within 1e-4,
/// else the last one below. A value that the element already holds changes nothing, not
/// even the mark: hosts set every parameter again after they have restored a chunk, and a choice
/// set again must not overwrite what the chunk has restored. [any thread, audio thread included]
void setFromHost(ZElement& element, float value) noexcept;

// The plain value, for interfaces that have ranges of their own: the index of a choice, the number
// of a float element.

/// Returns the plain value, within the list or the range even when the element is out of it; 0 for
/// an element that is neither discrete nor float. [any thread, audio thread included]
[[nodiscard]] float plainValueOf(const ZElement& element) noexcept;
/// As setFromHost, with a plain value: a choice is rounded, both are limited to their range.
/// Returns whether the element held another value. [any thread, audio thread included]
bool setPlainFromHost(ZElement& element, float value) noexcept;
/// Returns the element's value as the host displays it: the text of a choice, or a number with its
/// unit ("50 ms"). [any thread but the audio thread]
[[nodiscard]] ZString displayTextOf(const ZElement& element);
/// Returns the text of a plain value, as it would be displayed; the value is limited and rounded as
/// by setPlainFromHost. [any thread but the audio thread]
[[nodiscard]] ZString displayTextOf(const ZElement& element, float plain);
/// Returns the plain value that a text says: the text of a choice, in letters of any size, or a
/// number with or without a unit as readValue() takes it, limited to the range. None for any other
/// text.
/// [any thread but the audio thread]
[[nodiscard]] std::optional<float> plainValueOfText(const ZElement& element, std::string_view text);

}  // namespace orvane

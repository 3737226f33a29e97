// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

class ZResources;

/// What the product's library carries; packed from this folder by the build. [any thread]
///
/// "XML" "kestrune_vst.xml" is the application description, with its factory presets and signed;
/// "XML" "SaveCustomScale" a dialog, signed too;
/// "STRING" "strings.txt" the texts by number, for ZStringTable; each "IMAGE" a PNG with alpha, 8
/// bits a channel, by its file's name; "FONT" "Kolm 5pt.ttf" the pixel font of the labels.
[[nodiscard]] const ZResources& kestruneResources() noexcept;

}  // namespace orvane

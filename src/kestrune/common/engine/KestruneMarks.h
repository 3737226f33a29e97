// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// The pitch marks between which the synthesis moves sound, as stream positions in samples.
struct KestruneMarks
{
    double input = 0.0;   // newest mark of the input
    double output = 0.0;  // next mark of the output
    double step = 0.0;    // from the last mark of the output to the next
};

}  // namespace orvane

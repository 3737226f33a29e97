// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/measure/ClipNotes.h"
#include "tools/measure/PitchTracker.h"

#include <span>
#include <vector>

namespace orvane
{

/// All figures leave out the first 150 ms of a note, in which glide and correction settle, and the
/// last 50 ms, in which the next note starts.
constexpr double kSettlingSeconds = 0.15;
constexpr double kEndingSeconds = 0.05;

/// Pitch of a note every 5 ms after it has settled, in cents from the intended frequency. Times
/// without a pitch are left out. The sound lags the notes by delaySeconds.
std::vector<double> centsFromIntended(const PitchTracker& tracker, const ClipNote& note,
                                      double delaySeconds);

/// The quantile of the values for a share in 0 .. 1; 0 when there are no values.
double quantile(std::vector<double> values, double share);

/// Absolute distance of a clip from its intended notes.
struct NoteAccuracy
{
    double medianCents;
    double percentile95Cents;
    double pitchedShare;  // of the measured times, those that have a pitch
};

/// Measures all notes as centsFromIntended does.
NoteAccuracy noteAccuracy(const PitchTracker& tracker, std::span<const ClipNote> notes,
                          double delaySeconds);

}  // namespace orvane

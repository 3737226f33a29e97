// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/measure/ClipNotes.h"
#include "tools/measure/PitchTracker.h"

#include <span>
#include <vector>

namespace orvane
{

/// The first 150 ms of a note are left out of every figure: until then it settles, from the glide
/// as from the correction. So are the last 50 ms, where the next note begins.
constexpr double kSettlingSeconds = 0.15;
constexpr double kEndingSeconds = 0.05;

/// Pitch of a note after it has settled, every 5 ms, in cents from the intended frequency. Moments
/// without pitch are left out. delaySeconds: by how much the sound comes later than the notes say.
std::vector<double> centsFromIntended(const PitchTracker& tracker, const ClipNote& note,
                                      double delaySeconds);

/// The value below which the share in 0 .. 1 of the values lies; 0 for no values.
double quantile(std::vector<double> values, double share);

/// Distance of a clip from its intended notes, whatever the direction.
struct NoteAccuracy
{
    double medianCents;
    double percentile95Cents;
    double pitchedShare;  ///< of the moments looked at, those that have a pitch
};

NoteAccuracy noteAccuracy(const PitchTracker& tracker, std::span<const ClipNote> notes,
                          double delaySeconds);

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/measure/NoteAccuracy.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kStepSeconds = 0.005;

int stepsIn(const ClipNote& note)
{
    const double length = note.endSeconds - note.startSeconds - kSettlingSeconds - kEndingSeconds;
    return std::max(0, static_cast<int>(length / kStepSeconds));
}

}  // namespace

std::vector<double> centsFromIntended(const PitchTracker& tracker, const ClipNote& note,
                                      double delaySeconds)
{
    std::vector<double> cents;
    const double start = note.startSeconds + kSettlingSeconds + delaySeconds;
    for (int i = 0; i < stepsIn(note); ++i) {
        if (const auto hz = tracker.at(start + i * kStepSeconds))
            cents.push_back(1200.0 * std::log2(*hz / note.intendedHz));
    }
    return cents;
}

double quantile(std::vector<double> values, double share)
{
    assert(share >= 0.0 && share <= 1.0);
    if (values.empty())
        return 0.0;
    const double last = static_cast<double>(values.size() - 1);
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::lround(share * last));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

NoteAccuracy noteAccuracy(const PitchTracker& tracker, std::span<const ClipNote> notes,
                          double delaySeconds)
{
    std::vector<double> distances;
    int steps = 0;
    for (const ClipNote& note : notes) {
        steps += stepsIn(note);
        for (const double cents : centsFromIntended(tracker, note, delaySeconds))
            distances.push_back(std::fabs(cents));
    }
    const double pitched = static_cast<double>(distances.size()) / std::max(1, steps);
    return {quantile(distances, 0.5), quantile(distances, 0.95), pitched};
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFineGeometry.h"

namespace orvane
{

class KestruneHistory;

/// A period that is measured exactly, and how clear it is.
struct KestruneRefinedPeriod
{
    float period;   // samples
    float clarity;  // normalised correlation at the period, 1 at most
};

/// Measures a period on the middle signal: by the peak of the normalised correlation near the
/// period that is known roughly, then at two, four and more periods, which divides the error by as
/// many.
class KestrunePeriodRefiner
{
public:
    /// [setup]
    void Allocate(const KestruneFineGeometry& geometry);

    /// Cost of Refine for a period in samples, in the units of KestruneClassicAnalysis.
    /// [audio thread]
    [[nodiscard]] int CostOf(float period) const noexcept;
    /// time: a stream position; period: roughly, in samples. Where no peak is near, the period
    /// stays. [audio thread]
    [[nodiscard]] KestruneRefinedPeriod Refine(const KestruneHistory& middle, double time,
                                               float period) const noexcept;

private:
    /// A peak of the correlation near a lag.
    struct Peak
    {
        bool found = false;
        double lag = 0.0;     // middle samples
        double height = 0.0;  // of the largest value where no peak was found
    };

    /// Length of the compared stretches for a period, both in middle samples.
    [[nodiscard]] int LengthFor(double period) const noexcept;
    /// lag: where the peak is looked for, plus or minus reach; period: of the voice, which the
    /// compared stretches hold at least once. All in middle samples.
    [[nodiscard]] Peak FindPeak(const KestruneHistory& middle, double time, double lag, int reach,
                                double period) const noexcept;

    KestruneFineGeometry mGeometry;
};

}  // namespace orvane

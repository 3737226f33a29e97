// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// What the analysis knew of one frame.
struct KestruneAnalysisRecord
{
    double time = 0.0;      // middle of the frame, in stream samples
    float period = 0.0f;    // samples
    float strength = 0.0f;  // voicing as measured, 0 .. 1
    float hold = 0.0f;      // the same, later raised by the repair
};

/// The last analysis records in a circle, with the repair of octave errors and the reads between
/// records by which the synthesis follows the voice some blocks later.
class KestruneRecordRing
{
public:
    /// Memory for count records, at least nine. [setup]
    void Allocate(int count);
    /// Starts again with records at time 0 of the given period, in samples, and no voicing.
    /// [audio thread]
    void Fill(float period) noexcept;

    /// Replaces the newest record. [audio thread]
    void Write(const KestruneAnalysisRecord& record) noexcept;
    /// Repairs the record four blocks old by the nine newest: its period becomes their median,
    /// weighted by hold, where it is further than a whole tone from it, and its hold is raised
    /// where the newest three fade. [audio thread]
    void Repair() noexcept;
    /// Opens the place for the next record. The oldest goes when the circle is full.
    /// [audio thread]
    void Advance() noexcept;

    /// Values at a stream position, linear between records, constant beyond both ends.
    /// [audio thread]
    [[nodiscard]] float PeriodAt(double time) const noexcept;
    [[nodiscard]] float StrengthAt(double time) const noexcept;
    [[nodiscard]] float HoldAt(double time) const noexcept;

    /// The record written age calls of Advance ago; 0 is the newest.
    [[nodiscard]] const KestruneAnalysisRecord& Back(int age) const noexcept;

private:
    [[nodiscard]] int IndexBack(int age) const noexcept;
    [[nodiscard]] float WeightedMedianPeriod() const noexcept;
    [[nodiscard]] float At(double time, float KestruneAnalysisRecord::*value) const noexcept;

    std::vector<KestruneAnalysisRecord> mRecords;
    int mWrite = 0;  // newest
    int mRead = 0;   // oldest
};

}  // namespace orvane

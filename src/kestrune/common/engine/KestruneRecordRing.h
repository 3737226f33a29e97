// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// Result of the analysis of one frame.
struct KestruneAnalysisRecord
{
    double time = 0.0;      // centre of the frame, a stream position in samples
    float period = 0.0f;    // samples
    float strength = 0.0f;  // voicing as measured, 0 .. 1
    float hold = 0.0f;      // voicing after Repair, 0 .. 1

    // Of the fine tracking.
    bool hasNote = false;
    bool isLeft = false;  // the note is one of those that are not corrected
    double note = 0.0;    // that the voice is meant to be on, in semitones above 1 Hz
};

/// Ring buffer of the last analysis records. It repairs octave errors with a median over time and
/// interpolates between records, so that the synthesis can follow the voice some blocks later.
class KestruneRecordRing
{
public:
    /// Allocates count records, at least nine. [setup]
    void Allocate(int count);
    /// Sets all records to time 0, no voicing and the given period in samples. [audio thread]
    void Fill(float period) noexcept;

    /// Adds the newest record; drops the oldest when the ring is full. [audio thread]
    void Append(const KestruneAnalysisRecord& record) noexcept;
    /// Repairs the record that is four blocks old from the nine newest. If its period is more than
    /// a whole tone off their median, weighted by hold, it becomes that median. If one of the three
    /// newest is weakly voiced, its hold is raised to 0.75 at least. [audio thread]
    void Repair() noexcept;
    /// The stream position up to which values stay as they are when the next record comes and is
    /// followed by Repair. [audio thread]
    [[nodiscard]] double FinalUntil() const noexcept;

    /// Values at a stream position: interpolated linearly between records, constant before the
    /// oldest and after the newest. [audio thread]
    [[nodiscard]] float PeriodAt(double time) const noexcept;
    [[nodiscard]] float StrengthAt(double time) const noexcept;
    [[nodiscard]] float HoldAt(double time) const noexcept;

    /// The record of that age; 0 is the newest. [audio thread]
    [[nodiscard]] const KestruneAnalysisRecord& Back(int age) const noexcept;
    [[nodiscard]] KestruneAnalysisRecord& Back(int age) noexcept;
    /// Number of records in the ring. [audio thread]
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(mRecords.size()); }

private:
    [[nodiscard]] int IndexBack(int age) const noexcept;
    [[nodiscard]] float WeightedMedianPeriod() const noexcept;
    [[nodiscard]] float At(double time, float KestruneAnalysisRecord::*value) const noexcept;

    std::vector<KestruneAnalysisRecord> mRecords;
    int mWrite = 0;        // index of the newest record
    int mRead = 0;         // index of the oldest record
    bool mIsEmpty = true;  // the first record takes the place of what Fill wrote
};

}  // namespace orvane

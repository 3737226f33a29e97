// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneNoteChoice.h"

#include "zlib/common/buffers/ZBuffer.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>
#include <limits>

namespace orvane
{

namespace
{

constexpr double kSemitonesPerOctave = 12.0;
/// Cost of a change of note, in semitones times records.
constexpr double kChangeCost = 2.0;
/// The most that a record counts against a note, in semitones: one that is read wrong is no reason.
/// Where the notes lie far apart, it is this much more than the record counts against the nearest.
constexpr double kMostDistance = 2.0;
constexpr double kMostBeyondNearest = 1.0;

constexpr std::array<double, 12> kAllDegrees{0.0, 1.0, 2.0, 3.0, 4.0,  5.0,
                                             6.0, 7.0, 8.0, 9.0, 10.0, 11.0};

/// A note with the cheapest way to it.
struct Way
{
    double note;
    double origin;  // the note at the first pitch
    double cost;
};

/// Every note that a pitch can be near: the lowest pitch is 17 Hz, the highest 1600 Hz, under seven
/// octaves, and one more at either end.
constexpr std::size_t kMostNotes = 9 * (KestruneCorrection::kMaxTones + 1);

}  // namespace

void KestruneNoteChoice::SetReferenceFrequency(float hz) noexcept
{
    mReference =
        kSemitonesPerOctave *
        std::log2(static_cast<double>(hz > 0.0f ? hz : KestruneCorrection::kDefaultReferenceHz));
    Release();
}

void KestruneNoteChoice::SetTones(const float* tones, int count) noexcept
{
    assert(tones || count <= 0);
    count = std::clamp(count, 0, KestruneCorrection::kMaxTones);
    std::transform(tones, tones + count, mTones.begin() + 1,
                   [](float tone) { return static_cast<double>(tone); });
    mToneCount = count + 1;
    Release();
}

void KestruneNoteChoice::Release() noexcept
{
    mHeldNote.reset();
    mHeldDegree.reset();
}

KestruneNoteChoice::Note KestruneNoteChoice::Choose(std::span<const double> pitches) noexcept
{
    assert(!pitches.empty() && pitches.size() <= kMostPitches);
    std::array<double, kMostPitches> aboveRoot{};
    std::transform(pitches.begin(), pitches.end(), aboveRoot.begin(),
                   [this](double pitch) { return pitch - mReference; });
    const std::span<const double> course(aboveRoot.data(), pitches.size());
    ChooseAmong({mTones.data(), static_cast<std::size_t>(mToneCount)}, course, mHeldNote);

    Note note{*mHeldNote + mReference};
    const unsigned ignored = IgnoredDegrees();
    if (ignored == 0) {
        mHeldDegree.reset();
        return note;
    }
    ChooseAmong(kAllDegrees, course, mHeldDegree);
    const double octaves = std::floor(*mHeldDegree / kSemitonesPerOctave);
    const auto degree = static_cast<unsigned>(*mHeldDegree - octaves * kSemitonesPerOctave);
    note.isLeft = (ignored >> degree & 1u) != 0;
    return note;
}

void KestruneNoteChoice::ChooseAmong(std::span<const double> tones, std::span<const double> pitches,
                                     std::optional<double>& held) noexcept
{
    std::array<Way, kMostNotes> ways;
    std::size_t count = 0;
    const auto [lowest, highest] = std::minmax_element(pitches.begin(), pitches.end());
    const double lastOctave = std::floor(*highest / kSemitonesPerOctave) + 1.0;
    for (double octave = std::floor(*lowest / kSemitonesPerOctave) - 1.0; octave <= lastOctave;
         ++octave)
        for (const double tone : tones) {
            const double note = kSemitonesPerOctave * octave + tone;
            if (count == ways.size())
                break;
            ways[count++] = {note, note, !held || note == *held ? 0.0 : kChangeCost};
        }
    const std::span<Way> all(ways.data(), count);
    const auto isCheaper = [](const Way& a, const Way& b) { return a.cost < b.cost; };
    Way least = *std::min_element(all.begin(), all.end(), isCheaper);
    for (std::size_t i = 0; i < pitches.size(); ++i) {
        double most = std::numeric_limits<double>::max();
        for (const Way& way : all)
            most = std::min(most, std::fabs(way.note - pitches[i]) + kMostBeyondNearest);
        most = std::max(most, kMostDistance);
        const Way before = least;
        least.cost = std::numeric_limits<double>::max();
        for (Way& way : all) {
            if (i > 0 && way.cost > before.cost + kChangeCost) {
                way.cost = before.cost + kChangeCost;
                way.origin = before.origin;
            }
            way.cost += std::min(std::fabs(way.note - pitches[i]), most);
            least = std::min(least, way, isCheaper);
        }
    }
    held = least.origin;
}

unsigned KestruneNoteChoice::IgnoredDegrees() const noexcept
{
    unsigned degrees = 0;
    if (!mIgnoredNotes)
        return degrees;
    // The interface thread may be writing the flags.
    for (std::size_t degree = 0; degree < kAllDegrees.size(); ++degree)
        if (std::atomic_ref(mIgnoredNotes->Data()[degree]).load(std::memory_order_relaxed) == 1.0f)
            degrees |= 1u << degree;
    return degrees;
}

}  // namespace orvane

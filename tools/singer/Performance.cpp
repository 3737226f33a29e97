// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/Performance.h"

#include "tools/singer/SeededNoise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

constexpr double kConcertHz = 440.0;
constexpr double kVibratoHz = 5.5;
constexpr double kVibratoDelay = 0.25;  // seconds from the onset until it starts
constexpr double kVibratoGrowth = 0.3;  // seconds from its start to full width
constexpr double kScoopCents = 70.0;    // by which a phrase starts too low
constexpr double kSilentMove = 0.1;     // seconds in which the pitch moves during silence
constexpr double kDriftCents = 3.0;
constexpr double kShimmer = 0.04;
constexpr double kAttackLevel = 0.85;  // of a note's level; it swells from there
constexpr double kEndLevel = 0.8;
constexpr double kMurmurLevel = 0.4;
constexpr double kTiedLevel = 0.7;
constexpr double kBreathLevel = 0.02;
constexpr double kConsonantLevel = 0.06;
constexpr double kHissLevel = 0.1;

/// A smooth random track between -size and size with a knot every stepSeconds.
ControlTrack wander(double seconds, double stepSeconds, double size, std::uint64_t seed)
{
    SeededNoise noise(seed);
    ControlTrack track;
    const int knots = static_cast<int>(seconds / stepSeconds) + 1;
    for (int i = 0; i < knots; ++i)
        track.add(i * stepSeconds, size * noise.next());
    return track;
}

double consonantStart(const SungNote& note)
{
    return note.onsetSeconds - note.consonantSeconds;
}

/// An envelope of noise; times in seconds.
struct Burst
{
    double start;
    double rise;
    double end;
    double fall;
};

void addBurst(ControlTrack& track, const Burst& burst, double level)
{
    track.add(burst.start, 0.0);
    track.add(burst.start + burst.rise, level);
    track.add(burst.end - burst.fall, level);
    track.add(burst.end, 0.0);
}

}  // namespace

Performance::Performance(const Song& song)
    : mDrift(wander(song.seconds, 0.19, kDriftCents, 1))
    , mShimmer(wander(song.seconds, 0.11, kShimmer, 2))
{
    mVibrato.add(0.0, 0.0);
    mVoicing.add(0.0, 0.0);
    mAspiration.add(0.0, 0.0);
    mHiss.add(0.0, 0.0);
    for (std::size_t i = 0; i < kMovingFormants; ++i)
        mFormants[i].add(0.0, murmurFormants()[i]);
    for (std::size_t i = 0; i < song.notes.size(); ++i) {
        const SungNote& note = song.notes[i];
        const bool endsPhrase = i + 1 == song.notes.size() || song.notes[i + 1].startsPhrase;
        addPitch(note);
        addVibrato(note);
        addMouth(note);
        addBreath(note);
        addConsonantNoise(note);
        addVoicing(note, endsPhrase);
    }
}

void Performance::addPitch(const SungNote& note)
{
    const double cents = 1200.0 * std::log2(note.sungHz() / kConcertHz);
    const double start = note.onsetSeconds - 0.5 * note.glideSeconds;
    if (!mCents.isEmpty())
        mCents.add(note.startsPhrase ? start - kSilentMove : start, mCents.last());
    if (note.startsPhrase)
        mCents.add(start, cents - kScoopCents);
    mCents.add(start + note.glideSeconds, cents);
}

void Performance::addVibrato(const SungNote& note)
{
    const double begin = note.onsetSeconds + kVibratoDelay;
    mVibrato.add(begin, 0.0);
    mVibrato.add(begin + kVibratoGrowth, note.vibratoCents);
    mVibrato.add(note.endSeconds() - 0.1, note.vibratoCents);
    mVibrato.add(note.endSeconds(), 0.0);
}

void Performance::addVoicing(const SungNote& note, bool endsPhrase)
{
    const double onset = note.onsetSeconds;
    const double start = consonantStart(note);
    const double end = note.endSeconds();
    if (note.consonant == Consonant::kNone) {
        mVoicing.add(onset, std::min(mVoicing.last(), kTiedLevel * note.level));
    } else if (note.consonant == Consonant::kMurmur) {
        mVoicing.add(start - 0.015, mVoicing.last());
        mVoicing.add(start + 0.02, kMurmurLevel * note.level);
        mVoicing.add(onset - 0.015, kMurmurLevel * note.level);
    } else {
        mVoicing.add(start, mVoicing.last());
        mVoicing.add(start + 0.02, 0.0);
        mVoicing.add(onset - 0.015, 0.0);
    }
    mVoicing.add(onset + 0.05, kAttackLevel * note.level);
    mVoicing.add(onset + 0.4 * note.seconds, note.level);
    if (endsPhrase) {
        mVoicing.add(end - 0.15, kEndLevel * note.level);
        mVoicing.add(end + 0.05, 0.0);
    } else {
        mVoicing.add(end - 0.05, kEndLevel * note.level);
    }
}

void Performance::addMouth(const SungNote& note)
{
    const double onset = note.onsetSeconds;
    const double start = consonantStart(note);
    if (note.consonant == Consonant::kMurmur) {
        moveMouth(start - 0.03, start + 0.02, murmurFormants());
        moveMouth(onset - 0.02, onset + 0.05, formantsOf(note.vowel));
    } else {
        moveMouth(start - 0.04, onset + 0.05, formantsOf(note.vowel));
    }
}

void Performance::moveMouth(double fromSeconds, double toSeconds, const Formants& formants)
{
    for (std::size_t i = 0; i < kMovingFormants; ++i) {
        mFormants[i].add(fromSeconds, mFormants[i].last());
        mFormants[i].add(toSeconds, formants[i]);
    }
}

void Performance::addConsonantNoise(const SungNote& note)
{
    const double onset = note.onsetSeconds;
    const double start = consonantStart(note);
    const double level = note.level;
    if (note.consonant == Consonant::kBreath)
        addBurst(mAspiration, {start, 0.03, onset + 0.03, 0.05}, kConsonantLevel * level);
    if (note.consonant == Consonant::kHiss)
        addBurst(mHiss, {start, 0.03, onset, 0.03}, kHissLevel * level);
    if (note.consonant == Consonant::kStop)
        addBurst(mAspiration, {onset - 0.025, 0.003, onset, 0.02}, 2.0 * kConsonantLevel * level);
}

void Performance::addBreath(const SungNote& note)
{
    if (!note.startsPhrase)
        return;
    const double end = consonantStart(note) - 0.06;
    addBurst(mAspiration, {end - 0.24, 0.12, end, 0.09}, kBreathLevel);
}

Performance::Moment Performance::at(double seconds) const
{
    Moment moment{};
    const double vibrato =
        mVibrato.at(seconds) * std::sin(2.0 * std::numbers::pi * kVibratoHz * seconds);
    const double cents = mCents.at(seconds) + vibrato + mDrift.at(seconds);
    moment.pitchHz = kConcertHz * std::exp2(cents / 1200.0);
    moment.effort = std::clamp(mVoicing.at(seconds), 0.0, 1.0);
    moment.voicing = mVoicing.at(seconds) * (1.0 + mShimmer.at(seconds));
    moment.aspiration = mAspiration.at(seconds);
    moment.hiss = mHiss.at(seconds);
    for (std::size_t i = 0; i < kMovingFormants; ++i)
        moment.formants[i] = mFormants[i].at(seconds);
    return moment;
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace orvane
{

class KestruneStereoRing;

/// Finds where in its cycle a voice has its glottal pulse: the centre of gravity of the energy of
/// the differenced signal within a cycle (after Y. Stylianou, "Removing linear phase mismatches in
/// concatenative speech synthesis", IEEE Transactions on Speech and Audio Processing 9, 2001).
/// Grains that stand just behind the pulse keep the spectral envelope best when pitch is shifted.
class KestruneGlottalAlignment
{
public:
    /// longestPeriod in samples. [setup]
    void Allocate(int longestPeriod);
    /// Samples from a mark to the place for the first grain of a voice, 0 to less than a period.
    /// mark is a stream position, period is in samples; the second and third cycle from the mark on
    /// are read. reference: as in KestruneStereoRing::ReadMono. [audio thread]
    [[nodiscard]] double WaitAt(const KestruneStereoRing& input, std::int16_t reference,
                                double mark, float period) noexcept;

private:
    std::vector<float> mCycles;
};

}  // namespace orvane

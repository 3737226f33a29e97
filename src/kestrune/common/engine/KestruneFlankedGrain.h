// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

class KestruneStereoRing;

/// A grain whose two halves may differ in length: a piece of the input around a pitch mark, read at
/// another speed for the formant shift and added to the output around another mark. Where the right
/// half of one grain is as long as the left half of the next, the two windows add up to 1.
class KestruneFlankedGrain
{
public:
    /// Lengths of the two halves, in samples of the input.
    struct Flanks
    {
        double left;
        double right;
    };

    /// longestFlank in samples. [setup]
    void Allocate(int longestFlank);
    /// Marks are stream positions in samples; formantFactor (0.5 .. 2) is the factor by which the
    /// spectral envelope moves up. Equal marks and the factor 1 add the input itself, windowed.
    /// [audio thread]
    void Add(const KestruneStereoRing& input, double inputMark, KestruneStereoRing& output,
             double outputMark, Flanks flanks, float formantFactor) noexcept;

private:
    void FillWindow(int first, int count, float fraction, Flanks flanks,
                    float formantFactor) noexcept;

    int mLongestFlank = 0;
    std::vector<float> mWindow;
    std::vector<float> mInput;   // one channel's at a time
    std::vector<float> mOutput;  // one channel's at a time
};

}  // namespace orvane

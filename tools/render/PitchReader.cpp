// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PitchReader.h"

#include "tools/render/Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

constexpr float kHopSeconds = 0.0116f;

int hopAt(int rate)
{
    const int hop = static_cast<int>(static_cast<float>(rate) * kHopSeconds + 0.5f);
    if (!KestruneGeometry::Supports(static_cast<float>(rate), hop))
        fail("a rate of {} Hz cannot be rendered: the engine takes "
             "8000 to 768000 Hz; resample the file first",
             rate);
    return hop;
}

}  // namespace

PitchReader::PitchReader(int rate, KestruneSourceRange range, int pitchReference)
    : mHop(hopAt(rate))
{
    assert(pitchReference >= 0 && pitchReference <= 2);
    if (!mEngine.Initialize(static_cast<float>(rate), mHop))
        fail("not enough memory to read pitches at {} Hz", rate);
    mEngine.SetFrequencyRange(range.lowHz, range.highHz);
    mEngine.SetPitchReference(static_cast<std::int16_t>(pitchReference));
    const KestruneGeometry geometry = KestruneGeometry::For(static_cast<float>(rate), mHop);
    mPitchDelay = geometry.latency - geometry.firstStreamPos;
    for (StereoBlock* block : {&mInput, &mOutput}) {
        for (auto& channel : *block)
            channel.assign(static_cast<std::size_t>(mHop), 0.0f);
    }
}

void PitchReader::Feed(const StereoBlock& block, int first, int count)
{
    assert(first >= 0 && count >= 0);
    assert(static_cast<std::size_t>(first + count) <= block[0].size());
    mReadings.clear();
    for (int done = 0; done < count;) {
        const int frames = std::min(count - done, mHop - mFill);
        for (std::size_t c = 0; c < block.size(); ++c)
            std::copy_n(block[c].data() + first + done, frames, mInput[c].data() + mFill);
        done += frames;
        mFill += frames;
        if (mFill == mHop)
            ReadHop();
    }
}

void PitchReader::ReadHop()
{
    const float* const inputs[] = {mInput[0].data(), mInput[1].data()};
    float* const outputs[] = {mOutput[0].data(), mOutput[1].data()};
    mEngine.Process(inputs, outputs, mHop);
    mReadings.push_back({mFed - mPitchDelay, mEngine.GetInputPitch()});
    mFed += mHop;
    mFill = 0;
}

}  // namespace orvane

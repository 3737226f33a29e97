// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zdsp/common/ZFourierTransform.h"

namespace orvane
{

/// The pitch engine in its plain form: every bin, every cosine, one sample and one modulo at a
/// time. Slow, and the measure of the fast one.
/// Both channels are the same here, and the detector hears their sum.
struct PlainPsola
{
    PlainPsola(float sampleRate, int blockSize, float minHz, float maxHz)
        : mRate(sampleRate)
        , mBlock(blockSize)
        , mMinHz(minHz)
        , mMaxHz(maxHz)
    {
        int order = 0;
        for (; mFftSize < 2 * mN; ++order)
            mFftSize *= 2;
        mFourier = ZFourierTransform::Create(order, ZFourierTransform::kForward, 1);
        // The engine is made ready before it is told its range: it starts with 100 to 1300 Hz.
        const int periods = static_cast<int>(mRate / 100.0f) + static_cast<int>(mRate / 1300.0f);
        for (Record& record : mRecords)
            record.period = static_cast<float>(periods) * 0.5f;
    }

    void SetCorrection(float referenceHz, std::vector<float> tones, float seconds)
    {
        mCorrecting = true;
        mReference = referenceHz;
        mTones = std::move(tones);
        mSmoothing = std::pow(0.25f, static_cast<float>(mBlock) / (mRate * seconds));
    }

    void SetShifts(float pitchOctaves, float formantOctaves)
    {
        mPitchFactor = std::exp2(pitchOctaves);
        mFormantFactor = std::exp2(formantOctaves);
    }

    /// One block in, one block out.
    std::vector<float> Process(const std::vector<float>& block)
    {
        for (const float sample : block) {
            mInputRing[mInputWritePos] = sample;
            mInputWritePos = (mInputWritePos + 1) % mInputRing.size();
        }
        Analyze();
        Repair();
        Synthesize();
        std::vector<float> out(block.size());
        for (float& sample : out) {
            sample = std::exchange(mOutputRing[mOutputReadPos], 0.0f);
            mOutputReadPos = (mOutputReadPos + 1) % mOutputRing.size();
        }
        mStreamPos += mBlock;
        mRecordWrite = (mRecordWrite + 1) % mRecords.size();
        if (mRecordWrite == mRecordRead)
            mRecordRead = (mRecordRead + 1) % mRecords.size();
        return out;
    }

private:
    struct Record
    {
        double time = 0.0;
        float period = 0.0f;
        float strength = 0.0f;
        float hold = 0.0f;
    };

    static std::size_t Wrapped(std::int64_t pos, std::size_t length)
    {
        const auto size = static_cast<std::int64_t>(length);
        return static_cast<std::size_t>((pos % size + size) % size);
    }

    void Analyze()
    {
        ZBuffer frame(static_cast<std::uint32_t>(mFftSize), "ZBuffer");
        float energy = 0.0f;
        const auto start = static_cast<std::int64_t>(mInputWritePos) - mFrameLength;
        for (int i = 0; i < mFrameLength; ++i) {
            const float angle = 2.0f * std::numbers::pi_v<float> * static_cast<float>(i + 1) /
                                static_cast<float>(mFrameLength);
            const float sample = mInputRing[Wrapped(start + i, mInputRing.size())];
            const float value = 2.0f * sample * (0.54f - 0.46f * std::cos(angle));
            frame.Data()[i] = value;
            energy += value * value;
        }
        float voicing = 0.0f;
        const std::vector<float> spectrum = NormalizedSpectrum(frame, voicing);
        const float level =
            10.0f * std::log10(energy / static_cast<float>(mFrameLength) + 1.0e-10f);
        voicing *= std::clamp((level + 60.0f) / 10.0f, 0.0f, 1.0f);
        mRecords[mRecordWrite] = {static_cast<double>(mStreamPos + mG / 2 + 9 * mBlock) -
                                      mFrameLength * 0.5,
                                  mRate / Detect(spectrum, voicing), voicing, voicing};
    }

    std::vector<float> NormalizedSpectrum(ZBuffer& frame, float& voicing) const
    {
        ZBuffer re(frame.Length() / 2 + 1, "ZBuffer");
        ZBuffer im(frame.Length() / 2 + 1, "ZBuffer");
        mFourier->TransformReal(frame, re, im);
        const auto fftSize = static_cast<float>(mFftSize);
        const auto lo = static_cast<std::size_t>(fftSize * mMinHz / mRate + 0.5f);
        const auto hi = static_cast<std::size_t>(fftSize * mMaxHz * 1.5f / mRate + 0.5f);
        std::vector<float> values(hi + 1);
        for (std::size_t b = lo; b <= hi; ++b) {
            const float power = re.Data()[b] * re.Data()[b] + im.Data()[b] * im.Data()[b];
            values[b] = power > std::pow(10.0f, -9.6f) ? 10.0f * std::log10(power) : -96.0f;
        }
        const auto band = values.begin() + static_cast<std::ptrdiff_t>(lo);
        const float largest = *std::max_element(band, values.end());
        const float smallest = *std::min_element(band, values.end());
        const float scale = largest > smallest ? 2.0f / (largest - smallest) : 1.0f;
        double sum = 0.0;
        double squares = 0.0;
        for (std::size_t b = lo; b <= hi; ++b) {
            values[b] = (values[b] - (largest + smallest) * 0.5f) * scale;
            sum += values[b];
            squares += static_cast<double>(values[b]) * values[b];
        }
        const auto count = static_cast<double>(hi - lo + 1);
        const double variance = squares / count - sum / count * (sum / count);
        voicing = static_cast<float>(std::clamp((variance - 0.13) / 0.05, 0.0, 1.0));
        return values;
    }

    float Detect(const std::vector<float>& spectrum, float voicing)
    {
        const float step = 1.002892255783081f;
        const float binsPerHz = static_cast<float>(mFftSize) / mRate;
        float best = -1000000.0f;
        float found = mMinHz;
        std::size_t k = 0;
        for (float f = mMinHz; f <= mMaxHz; f *= step, ++k) {
            const int harmonics = static_cast<int>(mMaxHz * 1.5f / f);
            float sum = 0.0f;
            float weight = 1.0f;
            for (int h = 1; h <= harmonics; ++h, weight *= 0.8f)
                sum += weight * spectrum[static_cast<std::size_t>(
                                    static_cast<float>(h) * f * binsPerHz + 0.5f)];
            mComb[k] = (1.0f - voicing) * mComb[k] + voicing * sum;
            if (mComb[k] > best) {
                best = mComb[k];
                found = f;
            }
        }
        return found;
    }

    void Repair()
    {
        const auto back = [this](int age) -> Record& {
            return mRecords[Wrapped(static_cast<std::int64_t>(mRecordWrite) - age,
                                    mRecords.size())];
        };
        std::vector<std::pair<float, float>> nine;
        float total = 0.0f;
        for (int age = 0; age < 9; ++age) {
            nine.emplace_back(back(age).period, back(age).hold);
            total += back(age).hold;
        }
        const bool raise = nine[0].second < 0.5f || nine[1].second < 0.5f || nine[2].second < 0.5f;
        std::stable_sort(nine.begin(), nine.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::size_t at = 0;
        for (float sum = nine[0].second; sum < total * 0.5f; sum += nine[at].second)
            ++at;
        const float median = nine[at].first;
        Record& record = back(4);
        if (raise && record.hold < 0.75f)
            record.hold = 0.75f;
        if (record.period / median > 1.1224999f || record.period / median < 0.8909f)
            record.period = median;
    }

    float At(double time, float Record::*value) const
    {
        if (time >= mRecords[mRecordWrite].time)
            return mRecords[mRecordWrite].*value;
        if (time <= mRecords[mRecordRead].time)
            return mRecords[mRecordRead].*value;
        std::size_t i = mRecordRead;
        std::size_t j = (i + 1) % mRecords.size();
        for (; time > mRecords[j].time; j = (j + 1) % mRecords.size())
            i = j;
        const auto w =
            static_cast<float>((time - mRecords[i].time) / (mRecords[j].time - mRecords[i].time));
        return mRecords[i].*value + w * (mRecords[j].*value - mRecords[i].*value);
    }

    void MoveInputMark(float& period, float& hold)
    {
        period = At(mInputMark, &Record::period);
        while (std::abs(mInputMark + period - mOutputMark) < std::abs(mInputMark - mOutputMark)) {
            mInputMark += period;
            period = At(mInputMark, &Record::period);
        }
        hold = At(mInputMark, &Record::hold);
    }

    void Synthesize()
    {
        float period = 0.0f;
        float hold = 0.0f;
        while (static_cast<double>(mStreamPos) > mOutputMark) {
            MoveInputMark(period, hold);
            const float correction = mCorrecting ? Correct(1.0f / (period / mRate), hold) : 1.0f;
            const float ratio = correction * mPitchFactor;
            int length = static_cast<int>(period * 2.0f);
            const float strength = At(mOutputMark, &Record::strength);
            if (ratio < 1.0f && strength <= 0.3f) {
                const float stretch = 1.0f + (1.0f - strength) * 0.5f * (1.0f / ratio - 1.0f);
                length = static_cast<int>(static_cast<float>(length) * std::min(stretch, 2.0f));
            }
            AddGrain(length, mFormantFactor);
            mOutputMark += At(mOutputMark, &Record::period) / ratio;
        }
        MoveInputMark(period, hold);
    }

    void AddGrain(int length, float b)
    {
        const auto i0 = static_cast<std::int64_t>(mInputMark);
        const auto o0 = static_cast<std::int64_t>(mOutputMark);
        const auto fi = static_cast<float>(mInputMark - static_cast<double>(i0));
        const auto fo = static_cast<float>(mOutputMark - static_cast<double>(o0));
        const float pi = std::numbers::pi_v<float>;
        std::vector<float> grain(static_cast<std::size_t>(length) + 2, 0.0f);
        for (int i = 0; i < length; ++i) {
            const float u =
                2.0f * (static_cast<float>(i + 1) - fi) / static_cast<float>(length + 1) - 1.0f;
            const float w =
                0.5f * (1.0f + 1.125f * std::cos(pi * u) - 0.125f * std::cos(3.0f * pi * u));
            grain[static_cast<std::size_t>(i)] =
                w * mInputRing[Wrapped(i0 - length / 2 + i, mInputRing.size())];
        }
        const int resampled = static_cast<int>(static_cast<float>(length) / b);
        for (int k = 0; k < resampled; ++k) {
            const float x = (static_cast<float>(k) - static_cast<float>(resampled) * 0.5f) * b +
                            (static_cast<float>(length) * 0.5f + fi) - fo;
            const auto j = static_cast<std::size_t>(std::max(static_cast<int>(x), 0));
            mOutputRing[Wrapped(o0 - resampled / 2 + k, mOutputRing.size())] +=
                grain[j] + (x - static_cast<float>(j)) * (grain[j + 1] - grain[j]);
        }
    }

    float Correct(float frequency, float hold)
    {
        const float x = std::log10(frequency / mReference) / std::log10(2.0f);
        const float s = 12.0f * x - 12.0f * std::floor(x);
        float target = s < 6.0f ? 0.0f : 12.0f;
        for (const float tone : mTones)
            if ((s - target) * (s - target) > (s - tone) * (s - tone))
                target = tone;
        const float wanted = hold == 0.0f ? 1.0f : std::exp2((target - s) / 12.0f);
        mRatio = (1.0f - mSmoothing) * wanted + mSmoothing * mRatio;
        return mRatio;
    }

    const float mRate;
    const int mBlock;
    const float mMinHz;
    const float mMaxHz;
    const int mN = 1 + static_cast<int>(mRate / 20.0f);
    const int mG = 4 * mN + 2;
    int mFftSize = 1;
    std::unique_ptr<ZFourierTransform> mFourier;
    const int mFrameLength = 2 * static_cast<int>(mRate / mMinHz);
    std::vector<float> mInputRing =
        std::vector<float>(static_cast<std::size_t>(11 * mBlock + 6 * mN + 3));
    std::vector<float> mOutputRing =
        std::vector<float>(static_cast<std::size_t>(8 * mN + 5 + 2 * mBlock + 1));
    std::int64_t mStreamPos = mG + mBlock;
    std::size_t mInputWritePos = static_cast<std::size_t>(6 * mN + 3 + 10 * mBlock);
    std::size_t mOutputReadPos = 0;
    double mInputMark = mG;
    double mOutputMark = mG;
    std::vector<float> mComb = std::vector<float>(1495);
    std::vector<Record> mRecords =
        std::vector<Record>(mInputRing.size() / static_cast<std::size_t>(mBlock) + 1);
    std::size_t mRecordWrite = 0;
    std::size_t mRecordRead = 0;
    bool mCorrecting = false;
    float mReference = 440.0f;
    std::vector<float> mTones;
    float mSmoothing = 0.0f;
    float mRatio = 1.0f;
    float mPitchFactor = 1.0f;
    float mFormantFactor = 1.0f;
};

}  // namespace orvane

#pragma once

#include <complex>
#include <cstdint>
#include <vector>

namespace orvane
{

/// The pitch engine in its plain form: every bin, every cosine, one sample and one modulo at a
/// time, with a textbook transform in double precision. Slow, and the measure of the fast one.
/// Both channels are the same here, and the detector hears their sum.
class PlainPsola
{
public:
    PlainPsola(float sampleRate, int blockSize, float minHz, float maxHz);

    void SetCorrection(float referenceHz, std::vector<float> tones, float seconds);
    void SetShifts(float pitchOctaves, float formantOctaves);
    /// One block in, one block out.
    std::vector<float> Process(const std::vector<float>& block);

private:
    struct Record
    {
        double time = 0.0;
        float period = 0.0f;
        float strength = 0.0f;
        float hold = 0.0f;
    };

    void Analyze();
    std::vector<float> NormalizedSpectrum(const std::vector<float>& frame, float& voicing) const;
    float Detect(const std::vector<float>& spectrum, float voicing);
    void Repair();
    void Synthesize();
    void MoveInputMark(float& period, float& hold);
    void AddGrain(int length, float b);
    float Correct(float frequency, float hold);
    float At(double time, float Record::*value) const;

    float mRate;
    int mBlock;
    float mMinHz;
    float mMaxHz;
    int mN;
    int mG;
    int mFftSize;
    int mFrameLength;
    std::vector<float> mInputRing;
    std::vector<float> mOutputRing;
    std::int64_t mStreamPos;
    std::size_t mInputWritePos;
    std::size_t mOutputReadPos = 0;
    double mInputMark;
    double mOutputMark;
    std::vector<float> mComb;
    std::vector<Record> mRecords;
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

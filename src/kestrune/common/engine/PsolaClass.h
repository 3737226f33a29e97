// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneCorrection.h"
#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneGrain.h"
#include "kestrune/common/engine/KestruneHarmonicComb.h"
#include "kestrune/common/engine/KestruneRecordRing.h"
#include "kestrune/common/engine/KestruneSpectrum.h"
#include "kestrune/common/engine/KestruneStereoRing.h"

#include <cstdint>

namespace orvane
{

class ZBuffer;

/// The pitch engine: finds the pitch of a voice, pulls it towards the notes of a scale and shifts
/// pitch and formants apart from each other by pitch-synchronous overlap-add (E. Moulines and
/// F. Charpentier, "Pitch-synchronous waveform processing techniques for text-to-speech synthesis
/// using diphones", Speech Communication 9, 1990), here with marks that follow the detected period
/// alone and are not aligned to the waveform.
///
/// Two channels in and out share one analysis, one set of marks and one window. Every call of
/// Process takes one block of the size that Initialize was given. Input comes out GetLatency
/// samples later, give or take the distance between the two marks, which is at most half a period.
///
/// Setters are plain stores without lock: they take effect between blocks and must not run while
/// Process does. Those marked [setup] allocate; all others may be called on the audio thread.
class PsolaClass
{
public:
    PsolaClass();
    virtual ~PsolaClass();
    PsolaClass(const PsolaClass&) = delete;
    PsolaClass& operator=(const PsolaClass&) = delete;

    /// Runs one block. inputs, outputs: 2 channels x count samples, which may be the same arrays;
    /// count is the block size. A sample that is not finite, or beyond +180 dB of full scale,
    /// counts as 0. [audio thread]
    virtual void Process(const float* const* inputs, float* const* outputs, int count) noexcept;
    virtual void ProcessStereo(const float* const* inputs, float* const* outputs,
                               int count) noexcept;

    /// Octaves, -1 to 1; without effect while transposing is off. [audio thread]
    virtual void SetPitchShift(float octaves) noexcept;
    virtual void SetFormantShift(float octaves) noexcept;
    /// Frequency of the key's root in any octave, in Hz; 0 and below give 440. [audio thread]
    virtual void SetReferenceFrequency(float hz) noexcept;
    /// Target tones in semitones above the root, rising; at most 32 are taken. [audio thread]
    virtual void SetScaleTones(const float* tones, int count) noexcept;
    /// Twelve flags by semitone above the root, 1 leaving that note uncorrected. The buffer is not
    /// owned; its samples are read as relaxed atomics while the engine runs. Null ignores nothing.
    /// [audio thread]
    virtual void SetIgnoredNotes(ZBuffer* buffer) noexcept;
    /// Milliseconds in which three quarters of an error would be gone at one update a block; below
    /// 0 counts as 0, which is at once. [audio thread]
    virtual void SetCorrectionTime(float ms) noexcept;
    /// Range of voices to look for, in Hz, clamped to 20 .. 400 and 300 .. 1500. In force from the
    /// next block on. [audio thread]
    virtual void SetFrequencyRange(float minHz, float maxHz) noexcept;
    /// Any call starts again from no correction, with no glide. [audio thread]
    virtual void SetCorrectionEnabled(bool enabled) noexcept;
    /// What the detector hears: 0 left, 1 right, any other value both summed. [audio thread]
    virtual void SetPitchReference(std::int16_t reference) noexcept;
    virtual void SetTransposeEnabled(bool enabled) noexcept;

    /// The correction in force, in cents, without the pitch shift.
    [[nodiscard]] virtual float GetCorrectionCents() const noexcept;
    /// Pitch of the newest grain as it was sung and as it is put out, in Hz.
    [[nodiscard]] virtual float GetInputPitch() const noexcept;
    [[nodiscard]] virtual float GetOutputPitch() const noexcept;
    /// Samples from input to output.
    [[nodiscard]] virtual int GetLatency() const noexcept;

    /// Makes the engine ready for a rate in Hz and a block in samples. False when memory is short
    /// or the geometry does not take them; the engine must not run then. Throws what the factories
    /// of the transform and of ZGain throw. [setup]
    [[nodiscard]] virtual bool Initialize(float sampleRate, int blockSize);
    /// Forgets the sound: rings, comb and correction. The stream's clock and the records of the
    /// analysis go on. [audio thread]
    virtual void Reset() noexcept;
    /// Reallocates when the value is new; results and exceptions as of Initialize. [setup]
    [[nodiscard]] virtual bool SetSampleRate(float sampleRate);
    [[nodiscard]] virtual bool SetBlockSize(int blockSize);

protected:
    [[nodiscard]] virtual bool AllocateBuffers();
    /// Finds the pitch of the newest frame and repairs the record four blocks back.
    virtual void AnalyzeFrame() noexcept;
    /// Places grains up to the synthesis horizon.
    virtual void SynthesizeStereo() noexcept;
    /// Ratio that takes a voice at frequency, in Hz, towards its target.
    virtual float ComputeCorrectionRatio(float frequency, float hold) noexcept;

private:
    struct VoiceAtMark
    {
        float period;  // samples
        float hold;
    };

    [[nodiscard]] bool IsAllocated() const noexcept { return mGeometry.fftSize > 0; }
    void UpdateRange() noexcept;
    [[nodiscard]] KestruneSpectrum::Band AnalysedBand() const noexcept;
    /// Moves the input mark by periods to the place nearest the output mark.
    VoiceAtMark MoveInputMark() noexcept;
    [[nodiscard]] int GrainLength(float period, float ratio) const noexcept;

    float mSampleRate = 44100.0f;  // Hz
    int mBlockSize = 512;
    float mMinFrequency = 100.0f;  // lowest candidate, Hz
    float mMaxFrequency = 1300.0f;
    float mSpectrumTop = 1950.0f;  // upper edge of the analysed band, Hz
    int mShortestPeriod = 0;       // of the range in force, in samples
    int mLongestPeriod = 0;
    KestruneGeometry mGeometry;

    KestruneStereoRing mInputRing;  // a stream position p lives at p modulo the length
    int mInputWritePos = 0;
    std::int16_t mPitchReference = 0;
    KestruneSpectrum mSpectrum;
    KestruneHarmonicComb mComb;
    float mVoicing = 1.0f;  // of the newest frame, 0 .. 1
    float mDetectedFrequency = 700.0f;
    KestruneRecordRing mRecords;
    std::int64_t mStreamPos = 0;  // marks up to here are synthesised in the current block

    double mInputMark = 0.0;  // current mark in the input, in stream samples
    double mOutputMark = 0.0;
    KestruneStereoRing mOutputRing;  // a sum of grains
    int mOutputReadPos = 0;
    KestruneGrain mGrain;
    float mPitchShift = 0.0f;  // octaves
    float mFormantShift = 0.0f;
    bool mTransposeEnabled = false;
    bool mCorrectionEnabled = false;
    float mCorrectionTime = 0.2f;  // seconds
    KestruneCorrection mCorrection;
    float mInputPitch = 700.0f;  // Hz, of the newest grain
    float mOutputPitch = 700.0f;
};

}  // namespace orvane

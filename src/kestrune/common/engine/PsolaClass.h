// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneClassicAnalysis.h"
#include "kestrune/common/engine/KestruneCorrection.h"
#include "kestrune/common/engine/KestruneFineAnalysis.h"
#include "kestrune/common/engine/KestruneFineSynthesis.h"
#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneGrainQueue.h"
#include "kestrune/common/engine/KestruneMarks.h"
#include "kestrune/common/engine/KestruneStereoRing.h"
#include "kestrune/common/engine/KestruneTracking.h"

#include <cstdint>

namespace orvane
{

class ZBuffer;

/// The pitch engine: detects the pitch of a voice, corrects it to the notes of a scale, and shifts
/// pitch and formants independently of each other.
///
/// The shifts use pitch-synchronous overlap-add in the time domain (TD-PSOLA; E. Moulines and
/// F. Charpentier, "Pitch-synchronous waveform processing techniques for text-to-speech synthesis
/// using diphones", Speech Communication 9, 1990). Unlike there, pitch marks follow the detected
/// period only and are not aligned to the waveform.
///
/// That is the classic tracking. The fine one (KestruneFineAnalysis, KestruneFineSynthesis) listens
/// in another way and places its grains by glottal pulses; rings, block, marks and latency are the
/// same.
///
/// Both channels share one analysis, one set of marks and one window. Every call of Process takes
/// one block of the size given to Initialize. Output follows input by GetLatency samples, plus or
/// minus the distance between input mark and output mark, which is at most half a period.
///
/// What a block costs is spread: Process only places the grains. It puts off to sound them, and to
/// listen to the block, whose pitch is not needed before the next one. CatchUp does a share of that
/// work, and the next call of Process, or of a setter that matters for it, what is left. The output
/// is the same, whenever the work is done.
///
/// Setters store without a lock: call them between blocks, never while Process runs. Those marked
/// [setup] allocate; all others may be called on the audio thread.
class PsolaClass
{
public:
    PsolaClass();
    virtual ~PsolaClass();
    PsolaClass(const PsolaClass&) = delete;
    PsolaClass& operator=(const PsolaClass&) = delete;

    /// Processes one block. inputs, outputs: 2 channels x count samples, which may be the same
    /// arrays; count is the block size. Samples that are not finite or beyond +180 dB of full scale
    /// count as 0. [audio thread]
    virtual void Process(const float* const* inputs, float* const* outputs, int count) noexcept;
    virtual void ProcessStereo(const float* const* inputs, float* const* outputs,
                               int count) noexcept;
    /// Brings the work that the last block has put off to this share of it (0 .. 1), as near as its
    /// steps allow. A host of the engine whose calls are shorter than a block calls this in
    /// between, so that none of them costs much more than another. [audio thread]
    void CatchUp(float share) noexcept;

    /// Shifts in octaves, clamped to -1 .. 1; they have no effect while transposition is off.
    /// [audio thread]
    virtual void SetPitchShift(float octaves) noexcept;
    virtual void SetFormantShift(float octaves) noexcept;
    /// Frequency of the key's root in any octave, in Hz; 0 and below mean 440. [audio thread]
    virtual void SetReferenceFrequency(float hz) noexcept;
    /// Target tones in semitones above the root, in rising order; tones beyond the 32nd are
    /// ignored. [audio thread]
    virtual void SetScaleTones(const float* tones, int count) noexcept;
    /// Twelve flags by semitone above the root; a note whose flag is 1 is not corrected. The buffer
    /// is not owned; its samples are read as relaxed atomics while the engine runs. Null corrects
    /// every note. [audio thread]
    virtual void SetIgnoredNotes(ZBuffer* buffer) noexcept;
    /// Milliseconds after which a quarter of an error is left, at one update a block; 0 and below
    /// correct at once. [audio thread]
    virtual void SetCorrectionTime(float ms) noexcept;
    /// Range of the pitch detection in Hz, clamped to 20 .. 400 and 300 .. 1500; takes effect with
    /// the next block. [audio thread]
    virtual void SetFrequencyRange(float minHz, float maxHz) noexcept;
    /// Switches correction. Every call, also one to the same state, restarts without correction.
    /// [audio thread]
    virtual void SetCorrectionEnabled(bool enabled) noexcept;
    /// Input of the pitch detection: 0 left, 1 right, any other value the sum of both.
    /// [audio thread]
    virtual void SetPitchReference(std::int16_t reference) noexcept;
    virtual void SetTransposeEnabled(bool enabled) noexcept;
    /// Chooses how the voice is followed. A running engine goes over without a gap: both listen
    /// until the new one knows the voice, then its grains go on from the marks where they stand.
    /// [audio thread]
    virtual void SetTracking(KestruneTracking tracking) noexcept;
    /// The tracking that places the grains. [audio thread]
    [[nodiscard]] KestruneTracking GetTracking() const noexcept { return mTracking; }

    /// The correction of the newest grain in cents, without the pitch shift. [audio thread]
    [[nodiscard]] virtual float GetCorrectionCents() const noexcept;
    /// Pitch of the newest grain in the input and in the output, in Hz. [audio thread]
    [[nodiscard]] virtual float GetInputPitch() const noexcept;
    [[nodiscard]] virtual float GetOutputPitch() const noexcept;
    /// Samples from input to output; 0 before Initialize and after it failed. [any thread]
    [[nodiscard]] virtual int GetLatency() const noexcept;

    /// Prepares the engine for a rate in Hz and a block size in samples. Returns false if memory is
    /// short or KestruneGeometry does not support them; Process must not be called then. Throws
    /// ZException as the factories of ZFourierTransform and ZGain do. [setup]
    [[nodiscard]] virtual bool Initialize(float sampleRate, int blockSize);
    /// Clears the sound: ring buffers, pitch candidates and correction. Stream position, marks and
    /// analysis records stay. [audio thread]
    virtual void Reset() noexcept;
    /// Allocates again if the value is new; results and exceptions as of Initialize. [setup]
    [[nodiscard]] virtual bool SetSampleRate(float sampleRate);
    [[nodiscard]] virtual bool SetBlockSize(int blockSize);

protected:
    [[nodiscard]] virtual bool AllocateBuffers();
    /// Begins to detect the pitch of the newest frame, and to repair the record that is four blocks
    /// old.
    virtual void AnalyzeFrame() noexcept;
    /// Places grains up to the stream position.
    virtual void SynthesizeStereo() noexcept;
    /// Pitch ratio that moves a voice at frequency, in Hz, towards its target.
    virtual float ComputeCorrectionRatio(float frequency, float hold) noexcept;

private:
    /// What a block puts off is done in these steps.
    enum class Work
    {
        kGrain,
        kClassicStep,
        kFineStep
    };

    struct VoiceAtMark
    {
        float period;  // samples
        float hold;
    };

    [[nodiscard]] bool IsAllocated() const noexcept { return mGeometry.fftSize > 0; }
    [[nodiscard]] std::int64_t Head() const noexcept;
    void UpdateRange() noexcept;
    void UpdateGlide() noexcept;
    [[nodiscard]] int WorkLeft() const noexcept;
    /// due: the work that there is time for, of that which is left.
    [[nodiscard]] Work NextWork(int due) const noexcept;
    [[nodiscard]] int CostOf(Work work) const noexcept;
    void Do(Work work) noexcept;
    /// Does all work that is left.
    void CatchUp() noexcept { CatchUp(1.0f); }
    void PlaceClassicGrains() noexcept;
    void PlaceFineGrains() noexcept;
    void GoOver() noexcept;
    [[nodiscard]] bool Listens(KestruneTracking tracking) const noexcept;
    /// The classic records, with those of frames that wait if they change the values at a stream
    /// position.
    const KestruneRecordRing& RecordsFor(double time) noexcept;
    /// Moves the input mark by whole periods as near to the output mark as possible.
    VoiceAtMark MoveInputMark() noexcept;
    [[nodiscard]] int GrainLength(float period, float ratio) noexcept;

    float mSampleRate = 44100.0f;  // Hz
    int mBlockSize = 512;
    float mMinFrequency = 100.0f;  // lowest candidate, Hz
    float mMaxFrequency = 1300.0f;
    KestruneGeometry mGeometry;  // all 0 while the engine must not run

    KestruneStereoRing mInputRing;  // stream position p has index p modulo the length
    int mInputWritePos = 0;
    std::int16_t mPitchReference = 0;
    KestruneClassicAnalysis mClassicAnalysis;
    std::int64_t mStreamPos = 0;  // synthesis horizon: the block places grains up to here

    KestruneMarks mMarks;
    KestruneStereoRing mOutputRing;  // sum of the grains that have sounded
    int mOutputReadPos = 0;
    KestruneGrainQueue mGrains;
    int mBlockWork = 0;  // that the last block has put off, in units of KestruneClassicAnalysis
    float mPitchShift = 0.0f;  // octaves
    float mFormantShift = 0.0f;
    bool mTransposeEnabled = false;
    bool mCorrectionEnabled = false;
    float mCorrectionTime = 0.2f;  // seconds
    KestruneCorrection mCorrection;
    float mInputPitch = 700.0f;  // Hz, of the newest grain
    float mOutputPitch = 700.0f;

    KestruneTracking mTracking = KestruneTracking::kClassic;  // places the grains
    KestruneTracking mWantedTracking = KestruneTracking::kClassic;
    int mSettlingBlocks = 0;  // until the wanted tracking places the grains
    KestruneFineAnalysis mFineAnalysis;
    KestruneFineSynthesis mFineSynthesis;
};

}  // namespace orvane

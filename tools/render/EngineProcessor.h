#pragma once

#include "kestrune/common/PsolaClass.h"
#include "tools/render/RenderSettings.h"
#include "tools/render/VoiceProcessor.h"

#include <array>
#include <memory>
#include <vector>

namespace orvane
{

/// The pitch engine on its own: host blocks of any size are gathered into its hop of 11.6 ms, which
/// costs one hop of latency. With neither correction nor transposing on, the output is the input
/// delayed, to the bit; the engine runs beside it all the same, for its pitch readings.
class EngineProcessor : public VoiceProcessor
{
public:
    EngineProcessor();
    ~EngineProcessor() override;

    void Prepare(int sampleRate) override;
    void Set(std::string_view name, float value) override;
    [[nodiscard]] int Latency() const override;
    void Process(const float* const* inputs, float* const* outputs, int count) override;
    [[nodiscard]] std::span<const PitchReading> Readings() const override { return mReadings; }

    /// Frames that the engine is given at a time at a rate in Hz: 512 at 44100 Hz.
    [[nodiscard]] static int HopAt(int sampleRate);

private:
    static constexpr std::size_t kChannels = 2;

    void Apply();
    void ProcessHop();
    void Delay();

    RenderSettings mSettings;
    std::unique_ptr<PsolaClass> mEngine;  // null until Prepare
    int mHop = 0;
    int mFill = 0;             // frames in the current hop, 0 .. mHop - 1
    int mPitchDelay = 0;       // frames from a hop's start back to where the engine's marks are
    std::int64_t mFed = 0;     // frames of whole hops given to the engine
    std::size_t mDelayAt = 0;  // oldest frame of mDelayed
    std::array<std::vector<float>, kChannels> mInput;    // one hop
    std::array<std::vector<float>, kChannels> mOutput;   // one hop, handed out during the next
    std::array<std::vector<float>, kChannels> mDelayed;  // circles of the engine's latency
    std::vector<PitchReading> mReadings;
};

}  // namespace orvane

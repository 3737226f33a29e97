#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace orvane
{

/// Pitch of the voice at one place of the input, as it was sung and as it is put out.
struct PitchReading
{
    std::int64_t frame;  // of the input, counted from the first frame fed; negative before it
    float inputHz;       // 0 where nothing is known
    float outputHz;
};

/// What turns a voice into the processed voice: the one place where the program meets what it
/// renders with. Two channels in and out.
class VoiceProcessor
{
public:
    VoiceProcessor() = default;
    virtual ~VoiceProcessor() = default;
    VoiceProcessor(const VoiceProcessor&) = delete;
    VoiceProcessor& operator=(const VoiceProcessor&) = delete;

    /// Gets ready for a rate in Hz, silent; settings given before and after are in force from the
    /// first block on. Throws ZException for a rate that cannot be.
    virtual void Prepare(int sampleRate) = 0;
    /// Sets an element by its name, with a value in its range: an index or a number in its unit.
    /// Before the first block only: an offline run changes nothing on its way.
    virtual void Set(std::string_view name, float value) = 0;
    /// Frames from input to output. Needs Prepare.
    [[nodiscard]] virtual int Latency() const = 0;
    /// Runs one block of any size. inputs, outputs: 2 channels x count frames, not the same arrays.
    virtual void Process(const float* const* inputs, float* const* outputs, int count) = 0;
    /// What was found out during the last call of Process, the oldest first.
    [[nodiscard]] virtual std::span<const PitchReading> Readings() const = 0;
};

}  // namespace orvane

#pragma once

#include "pluginwrappers/common/AudioEffectX.h"
#include "zlib/common/ZInterfaceThread.h"
#include "zlib/common/ZString.h"

#include <cstdint>
#include <span>
#include <thread>

namespace orvane
{

/// The effect object: the host's whole view of the plug-in. Lives from the entry call to effClose.
///
/// Keeps the interface thread alive, and holds the interface lock around each call of the
/// dispatcher but those that a host makes in the course of its audio.
///
/// Without a signal network it is a plain path: two channels in, the same two out, no latency.
class ZVSTPlugin : public AudioEffectX
{
public:
    /// Throws ZException when a part of the plug-in cannot be built. [host thread]
    explicit ZVSTPlugin(audioMasterCallback host);
    ~ZVSTPlugin() override;

    /// Whether the host is asked for MIDI before processing begins. [setup]
    void SetWantsMidi(bool wantsMidi) { mWantsMidi = wantsMidi; }

    std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* ptr, float opt) override;

    void resume() override;
    /// A rate that is no positive number changes nothing.
    void setSampleRate(float rate) override;
    /// frames below 1 change nothing.
    void setBlockSize(std::int32_t frames) override;
    void processReplacing(float** inputs, float** outputs,
                          std::int32_t sampleFrames) noexcept override;
    void process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept override;

    [[nodiscard]] std::int32_t getProgram() override { return mCurrentProgram; }
    void setProgram(std::int32_t index) override;
    void setProgramName(const char* text) override;
    void getProgramName(std::span<char> text) override;
    bool getVendorString(std::span<char> text) override;

private:
    [[nodiscard]] bool IsAudioCall(std::int32_t opcode) const;

    ZInterfaceThread mInterfaceThread;  // first, since it outlives all that it serves
    const std::thread::id mEntryThread = std::this_thread::get_id();
    std::int32_t mCurrentProgram = 0;
    ZString mProgramName = "Init";
    bool mWantsMidi = false;
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AEffEditor.h"
#include "pluginwrappers/interface/AEffect.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

/// Lower half of the plug-in interface's effect: owns the record that the host drives and turns
/// each call through it into a virtual operation. An exception that leaves an operation is
/// reported and answered by 0.
///
/// Texts are written to the room that the host hands over, terminated; an index may be any number.
/// The object is deleted by the host's effClose. A derived class waits in its destructor, under the
/// interface lock, for its calls of the host.
class AudioEffect
{
public:
    /// audioMaster may be null: then the host is never called. [setup]
    AudioEffect(audioMasterCallback audioMaster, std::int32_t numPrograms, std::int32_t numParams);
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;
    virtual ~AudioEffect() = default;

    /// The record, valid as long as the object. [any thread]
    [[nodiscard]] AEffect* getAeffect() { return &cEffect; }

    /// Deletes the object, once other threads are back from the host. Where the host closes from
    /// inside a call that this thread makes of it, the frames around that call still need the
    /// object; then, and where another's call does not come back, another thread deletes it once
    /// they are done, and the host is not called any more. [host thread or interface thread]
    void close();
    /// Whether a call of the host is not yet back. [any thread]
    [[nodiscard]] bool isInHostCall() const { return mHostCalls > 0; }

    /// Answers an opcode; 0 for one it does not know. [host thread]
    virtual std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void* ptr, float opt);

    /// Processing ends. No block is processed meanwhile. [host thread]
    virtual void suspend() {}
    /// Processing is about to begin; may come twice in a row. [host thread]
    virtual void resume() {}
    /// In Hz. [setup]
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    /// Greatest number of frames of a block to come. [setup]
    virtual void setBlockSize(std::int32_t frames) { blockSize = frames; }
    /// Overwrites outputs. inputs, outputs: channels x sampleFrames; may be the same. [audio
    /// thread]
    virtual void processReplacing(float** inputs, float** outputs, std::int32_t sampleFrames) = 0;

    /// value: 0 to 1. [any thread]
    virtual void setParameter(std::int32_t /*index*/, float /*value*/) {}
    [[nodiscard]] virtual float getParameter(std::int32_t /*index*/) { return 0.0f; }
    /// Tells the host that the plug-in itself changes a parameter. [interface thread]
    virtual void setParameterAutomated(std::int32_t index, float value);

    [[nodiscard]] virtual std::int32_t getProgram() { return curProgram; }
    /// index: 0 to numPrograms - 1.
    virtual void setProgram(std::int32_t index) { curProgram = index; }
    virtual void setProgramName(const char* /*text*/) {}
    virtual void getProgramName(std::span<char> text);
    /// The unit of a parameter's value.
    virtual void getParameterLabel(std::int32_t index, std::span<char> text);
    /// A parameter's value as text.
    virtual void getParameterDisplay(std::int32_t index, std::span<char> text);
    virtual void getParameterName(std::int32_t index, std::span<char> text);
    /// Lends the state of one program or of all, and gives its size in bytes; 0 for none.
    virtual std::int32_t getChunk(void** data, bool isPreset);
    /// Takes over a state; 1 when it was taken. size > 0.
    virtual std::int32_t setChunk(void* data, std::int32_t size, bool isPreset);

    /// Adds to outputs, else as processReplacing. [audio thread]
    virtual void process(float** inputs, float** outputs, std::int32_t sampleFrames) = 0;

protected:
    void setUniqueID(std::int32_t id) { cEffect.uniqueID = id; }
    void setNumInputs(std::int32_t count) { cEffect.numInputs = count; }
    void setNumOutputs(std::int32_t count) { cEffect.numOutputs = count; }
    void canMono(bool state = true) { setFlag(effFlagsCanMono, state); }
    void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
    void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }
    /// Latency in sample frames. The host hears of it by ioChanged.
    void setInitialDelay(std::int32_t sampleFrames) { cEffect.initialDelay = sampleFrames; }
    /// Announces the editor, or takes it off with null.
    void setEditor(std::unique_ptr<AEffEditor> newEditor);

    /// Asks a service of the host; 0 where there is no host. The interface lock is given up
    /// meanwhile, so whatever it guards may have changed; a caller that does not hold it must not
    /// touch the object any more, which the host may have closed. [host thread or interface thread]
    std::intptr_t callHost(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                           void* ptr = nullptr, float opt = 0.0f);

    /// Waits until other threads are back from the host, so that the object may go. The interface
    /// lock, which is held, is given up meanwhile.
    void waitForHostCalls() const;

    audioMasterCallback audioMaster;
    std::unique_ptr<AEffEditor> editor;
    float sampleRate = 44100.0f;  // Hz
    std::int32_t blockSize = 1024;
    std::int32_t numPrograms;
    std::int32_t numParams;
    std::int32_t curProgram = 0;
    AEffect cEffect{};

private:
    std::atomic<int> mHostCalls{0};      // not yet back
    std::atomic<bool> mIsClosed{false};  // by the host, from inside one of them

    [[nodiscard]] bool hostCallsReturn(std::chrono::milliseconds limit) const;
    void setFlag(AEffectFlags flag, bool state);
    std::intptr_t dispatchProgram(std::int32_t opcode, std::intptr_t value, void* ptr);
    std::intptr_t dispatchParameterText(std::int32_t opcode, std::int32_t index, void* ptr);
    std::intptr_t dispatchEditor(std::int32_t opcode, void* ptr);
    std::intptr_t dispatchChunk(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                void* ptr);
};

/// A host's number where 32 bits are meant. What does not fit becomes -1, which no operation takes
/// for an index, a count or a size.
[[nodiscard]] std::int32_t hostNumber(std::intptr_t value);

}  // namespace orvane

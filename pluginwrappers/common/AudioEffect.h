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

/// Base of effects with the operations of the plug-in interface's first version. Owns the record
/// that the host calls through and forwards each call to a virtual operation. When an operation
/// throws, the exception is reported to the user and the host gets 0.
///
/// Texts are written with their terminator into the host's buffer. Indexes from the host may be any
/// number. effClose deletes the object. The destructor of a derived class calls waitForHostCalls
/// under the interface lock.
class AudioEffect
{
public:
    /// With a null audioMaster the host is never called. numPrograms >= 1, numParams >= 0. [setup]
    AudioEffect(audioMasterCallback audioMaster, std::int32_t numPrograms, std::int32_t numParams);
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;
    virtual ~AudioEffect() = default;

    /// Returns the record, which lives as long as the object. [any thread]
    [[nodiscard]] AEffect* getAeffect() { return &cEffect; }

    /// Deletes the object after waiting for the calls of the host that other threads have in
    /// progress. When this thread itself is inside such a call, or the other calls take longer than
    /// a second, the object is deleted later by another thread and no longer calls the host.
    /// [host thread or interface thread]
    void close();
    /// Returns whether a call of the host is in progress. [any thread]
    [[nodiscard]] bool isInHostCall() const { return mHostCalls > 0; }

    /// Handles an opcode and returns its result; 0 for an unknown opcode. [host thread]
    virtual std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void* ptr, float opt);

    /// Ends processing; never called while a block is processed. [host thread]
    virtual void suspend() {}
    /// Prepares for processing; hosts may call it twice in a row. [host thread]
    virtual void resume() {}
    /// rate in Hz. [setup]
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    /// Sets the length of the longest block to come. [setup]
    virtual void setBlockSize(std::int32_t frames) { blockSize = frames; }
    /// Processes a block and overwrites outputs. inputs, outputs: channels x sampleFrames, may be
    /// the same arrays. [audio thread]
    virtual void processReplacing(float** inputs, float** outputs, std::int32_t sampleFrames) = 0;

    /// value: 0 to 1. [any thread]
    virtual void setParameter(std::int32_t /*index*/, float /*value*/) {}
    [[nodiscard]] virtual float getParameter(std::int32_t /*index*/) { return 0.0f; }
    /// Notifies the host that the plug-in has changed a parameter. [interface thread]
    virtual void setParameterAutomated(std::int32_t index, float value);

    [[nodiscard]] virtual std::int32_t getProgram() { return curProgram; }
    /// index: 0 to numPrograms - 1.
    virtual void setProgram(std::int32_t index) { curProgram = index; }
    virtual void setProgramName(const char* /*text*/) {}
    virtual void getProgramName(std::span<char> text);
    /// Writes the unit of a parameter's value.
    virtual void getParameterLabel(std::int32_t index, std::span<char> text);
    /// Writes a parameter's value as text.
    virtual void getParameterDisplay(std::int32_t index, std::span<char> text);
    virtual void getParameterName(std::int32_t index, std::span<char> text);
    /// Points data to the state of the current program (isPreset) or of all programs, which the
    /// effect keeps, and returns its size in bytes; 0 for none. data is not null.
    virtual std::int32_t getChunk(void** data, bool isPreset);
    /// Restores a state and returns 1 when that succeeded. data is not null, size > 0.
    virtual std::int32_t setChunk(void* data, std::int32_t size, bool isPreset);

    /// As processReplacing, but adds to outputs. [audio thread]
    virtual void process(float** inputs, float** outputs, std::int32_t sampleFrames) = 0;

protected:
    void setUniqueID(std::int32_t id) { cEffect.uniqueID = id; }
    void setNumInputs(std::int32_t count) { cEffect.numInputs = count; }
    void setNumOutputs(std::int32_t count) { cEffect.numOutputs = count; }
    void canMono(bool state = true) { setFlag(effFlagsCanMono, state); }
    void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
    void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }
    /// Sets the latency in sample frames; ioChanged notifies the host of it.
    void setInitialDelay(std::int32_t sampleFrames) { cEffect.initialDelay = sampleFrames; }
    /// Replaces the editor, null for none, and sets the flag by which the host knows of it.
    void setEditor(std::unique_ptr<AEffEditor> newEditor);

    /// Calls the host and returns its answer; 0 without a host or after close. The interface lock
    /// is released during the call, so that what it guards may have changed afterwards. A caller
    /// without the lock must not touch the object afterwards, since the host may have closed it.
    /// [host thread or interface thread]
    std::intptr_t callHost(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                           void* ptr = nullptr, float opt = 0.0f);

    /// Waits until no other thread calls the host, so that the object may be deleted. The caller
    /// holds the interface lock, which is released during the wait.
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
    std::atomic<int> mHostCalls{0};      // calls of the host in progress
    std::atomic<bool> mIsClosed{false};  // waits for another thread to delete it

    [[nodiscard]] bool hostCallsReturnWithin(std::chrono::milliseconds limit) const;
    void setFlag(AEffectFlags flag, bool state);
    std::intptr_t dispatchProgram(std::int32_t opcode, std::intptr_t value, void* ptr);
    std::intptr_t dispatchParameterText(std::int32_t opcode, std::int32_t index, void* ptr);
    std::intptr_t dispatchEditor(std::int32_t opcode, void* ptr);
    std::intptr_t dispatchChunk(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                void* ptr);
};

/// Converts a number from the host to 32 bits. A number that does not fit becomes -1, which every
/// operation refuses as an index, a count or a size.
[[nodiscard]] std::int32_t hostNumber(std::intptr_t value);

}  // namespace orvane

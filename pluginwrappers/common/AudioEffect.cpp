// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/AudioEffect.h"

#include "pluginwrappers/common/DeferredDelete.h"
#include "pluginwrappers/common/VstText.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cassert>
#include <chrono>
#include <cstddef>
#include <thread>
#include <utility>

namespace orvane
{

namespace
{

constexpr std::int32_t kIdentity = fourCharacters("NvEf");

AudioEffect* effectOf(AEffect* record)
{
    return record != nullptr ? static_cast<AudioEffect*>(record->object) : nullptr;
}

// Calls an operation of the effect. Exceptions are reported here and never reach the host.
template <typename Call>
auto guarded(AEffect* record, Call call) noexcept -> decltype(call(*effectOf(record)))
{
    using Answer = decltype(call(*effectOf(record)));
    try {
        if (AudioEffect* const effect = effectOf(record))
            return call(*effect);
    } catch (...) {
        reportCurrentException();
    }
    return Answer();
}

std::intptr_t dispatcherEntry(AEffect* record, std::int32_t opcode, std::int32_t index,
                              std::intptr_t value, void* ptr, float opt)
{
    const std::intptr_t answer = guarded(record, [&](AudioEffect& effect) {
        return effect.dispatcher(opcode, index, value, ptr, opt);
    });
    if (opcode == effClose)
        guarded(record, [](AudioEffect& effect) { effect.close(); });
    return answer;
}

void processEntry(AEffect* record, float** inputs, float** outputs, std::int32_t sampleFrames)
{
    guarded(record, [&](AudioEffect& effect) { effect.process(inputs, outputs, sampleFrames); });
}

void processReplacingEntry(AEffect* record, float** inputs, float** outputs,
                           std::int32_t sampleFrames)
{
    guarded(record,
            [&](AudioEffect& effect) { effect.processReplacing(inputs, outputs, sampleFrames); });
}

// Some hosts call it although the flags do not announce double precision.
void processDoubleReplacingEntry(AEffect* /*record*/, double** /*inputs*/, double** /*outputs*/,
                                 std::int32_t /*sampleFrames*/)
{
}

void setParameterEntry(AEffect* record, std::int32_t index, float value)
{
    guarded(record, [&](AudioEffect& effect) { effect.setParameter(index, value); });
}

float getParameterEntry(AEffect* record, std::int32_t index)
{
    return guarded(record, [&](AudioEffect& effect) { return effect.getParameter(index); });
}

std::span<char> textBuffer(void* ptr, VstTextSize bytes)
{
    assert(ptr != nullptr);
    return {static_cast<char*>(ptr), static_cast<std::size_t>(bytes)};
}

/// Marks a call of the host in progress, for as long as the object lives. The marks of a thread
/// form a list, since the host may call the plug-in and with that cause further calls.
class HostCallScope
{
public:
    /// count: the effect's number of calls in progress. It is decreased after everything else,
    /// since another thread may delete the effect as soon as it is 0.
    HostCallScope(const AudioEffect& effect, std::atomic<int>& count)
        : mEffect(effect)
        , mCount(count)
        , mOuter(innermost)
    {
        ++mCount;
        innermost = this;
    }
    HostCallScope(const HostCallScope&) = delete;
    HostCallScope& operator=(const HostCallScope&) = delete;
    ~HostCallScope()
    {
        assert(innermost == this);
        innermost = mOuter;
        --mCount;
    }

    /// Returns whether this thread is inside a call of the host by the effect.
    static bool IsInProgress(const AudioEffect& effect)
    {
        const HostCallScope* call = innermost;
        while (call != nullptr && &call->mEffect != &effect)
            call = call->mOuter;
        return call != nullptr;
    }

private:
    static thread_local const HostCallScope* innermost;

    const AudioEffect& mEffect;
    std::atomic<int>& mCount;
    const HostCallScope* const mOuter;
};

thread_local const HostCallScope* HostCallScope::innermost = nullptr;

}  // namespace

std::int32_t hostNumber(std::intptr_t value)
{
    return std::in_range<std::int32_t>(value) ? static_cast<std::int32_t>(value) : -1;
}

AudioEffect::AudioEffect(audioMasterCallback host, std::int32_t programs, std::int32_t parameters)
    : audioMaster(host)
    , numPrograms(programs)
    , numParams(parameters)
{
    assert(programs >= 1 && parameters >= 0);
    cEffect.magic = kEffectMagic;
    cEffect.dispatcher = dispatcherEntry;
    cEffect.process = processEntry;
    cEffect.setParameter = setParameterEntry;
    cEffect.getParameter = getParameterEntry;
    cEffect.numPrograms = programs;
    cEffect.numParams = parameters;
    cEffect.ioRatio = 1.0f;
    cEffect.object = this;
    cEffect.version = 1;
    cEffect.processReplacing = processReplacingEntry;
    cEffect.processDoubleReplacing = processDoubleReplacingEntry;
}

std::intptr_t AudioEffect::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                      void* ptr, float opt)
{
    switch (opcode) {
    case effSetProgram:
    case effGetProgram:
    case effSetProgramName:
    case effGetProgramName:
        return dispatchProgram(opcode, value, ptr);
    case effGetParamLabel:
    case effGetParamDisplay:
    case effGetParamName:
        return dispatchParameterText(opcode, index, ptr);
    case effSetSampleRate:
        setSampleRate(opt);
        return 0;
    case effSetBlockSize:
        setBlockSize(hostNumber(value));
        return 0;
    case effMainsChanged:
        value != 0 ? resume() : suspend();
        return 0;
    case effEditGetRect:
    case effEditOpen:
    case effEditClose:
    case effEditIdle:
        return dispatchEditor(opcode, ptr);
    case effIdentify:
        return kIdentity;
    case effGetChunk:
    case effSetChunk:
        return dispatchChunk(opcode, index, value, ptr);
    default:
        return 0;
    }
}

std::intptr_t AudioEffect::dispatchProgram(std::int32_t opcode, std::intptr_t value, void* ptr)
{
    if (opcode == effGetProgram)
        return getProgram();
    if (opcode == effSetProgram) {
        if (value >= 0 && value < numPrograms)
            setProgram(hostNumber(value));
        return 0;
    }
    if (ptr == nullptr)
        return 0;
    if (opcode == effSetProgramName) {
        setProgramName(static_cast<const char*>(ptr));
        return 0;
    }
    assert(opcode == effGetProgramName);
    getProgramName(textBuffer(ptr, kVstMaxProgNameLen));
    return 0;
}

std::intptr_t AudioEffect::dispatchParameterText(std::int32_t opcode, std::int32_t index, void* ptr)
{
    if (ptr == nullptr)
        return 0;
    const std::span<char> text = textBuffer(ptr, kVstMaxParamStrLen);
    if (opcode == effGetParamLabel)
        getParameterLabel(index, text);
    else if (opcode == effGetParamDisplay)
        getParameterDisplay(index, text);
    else if (opcode == effGetParamName)
        getParameterName(index, text);
    else
        assert(false);
    return 0;
}

std::intptr_t AudioEffect::dispatchEditor(std::int32_t opcode, void* ptr)
{
    if (!editor)
        return 0;
    switch (opcode) {
    case effEditGetRect:
        return ptr != nullptr && editor->getRect(static_cast<ERect**>(ptr));
    case effEditOpen:
        return editor->open(ptr);
    case effEditClose:
        editor->close();
        return 0;
    default:
        editor->idle();
        return 0;
    }
}

std::intptr_t AudioEffect::dispatchChunk(std::int32_t opcode, std::int32_t index,
                                         std::intptr_t value, void* ptr)
{
    if (ptr == nullptr)
        return 0;
    const bool isPreset = index != 0;
    if (opcode == effGetChunk)
        return getChunk(static_cast<void**>(ptr), isPreset);
    assert(opcode == effSetChunk);
    const std::int32_t bytes = hostNumber(value);
    return bytes > 0 ? setChunk(ptr, bytes, isPreset) : 0;
}

void AudioEffect::setParameterAutomated(std::int32_t index, float value)
{
    callHost(audioMasterAutomate, index, 0, nullptr, value);
}

void AudioEffect::getProgramName(std::span<char> text)
{
    writeHostText({}, text);
}

void AudioEffect::getParameterLabel(std::int32_t /*index*/, std::span<char> text)
{
    writeHostText({}, text);
}

void AudioEffect::getParameterDisplay(std::int32_t /*index*/, std::span<char> text)
{
    writeHostText({}, text);
}

void AudioEffect::getParameterName(std::int32_t /*index*/, std::span<char> text)
{
    writeHostText({}, text);
}

std::int32_t AudioEffect::getChunk(void** data, bool /*isPreset*/)
{
    *data = nullptr;
    return 0;
}

std::int32_t AudioEffect::setChunk(void* /*data*/, std::int32_t /*size*/, bool /*isPreset*/)
{
    return 0;
}

void AudioEffect::setEditor(std::unique_ptr<AEffEditor> newEditor)
{
    editor = std::move(newEditor);
    setFlag(effFlagsHasEditor, editor != nullptr);
}

std::intptr_t AudioEffect::callHost(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                    void* ptr, float opt)
{
    if (audioMaster == nullptr || mIsClosed)
        return 0;
    const HostCallScope call(*this, mHostCalls);
    // The host may call back, also from another thread that this call waits for.
    const ZInterfaceUnlock unlocked;
    return audioMaster(&cEffect, opcode, index, value, ptr, opt);
}

void AudioEffect::close()
{
    // The wait is limited: the host may need this thread to finish the calls that are waited for.
    constexpr std::chrono::seconds kLongestWait(1);
    const ZInterfaceLock lock;
    if (!HostCallScope::IsInProgress(*this) && hostCallsReturnWithin(kLongestWait)) {
        delete this;
        return;
    }
    mIsClosed = true;
    deleteDeferred(this);
}

bool AudioEffect::hostCallsReturnWithin(std::chrono::milliseconds limit) const
{
    constexpr std::chrono::milliseconds kPause(1);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (isInHostCall() && std::chrono::steady_clock::now() < end) {
        const ZInterfaceUnlock unlocked;
        std::this_thread::sleep_for(kPause);
    }
    return !isInHostCall();
}

void AudioEffect::waitForHostCalls() const
{
    while (!hostCallsReturnWithin(std::chrono::hours(1))) {
    }
}

void AudioEffect::setFlag(AEffectFlags flag, bool state)
{
    cEffect.flags = state ? cEffect.flags | flag : cEffect.flags & ~flag;
}

}  // namespace orvane

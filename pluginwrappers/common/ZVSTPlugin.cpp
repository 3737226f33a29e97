#include "pluginwrappers/common/ZVSTPlugin.h"

#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/VstText.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZInterfaceLock.h"

#include <algorithm>
#include <cmath>

namespace orvane
{

namespace
{

constexpr std::int32_t kPrograms = 1;    // without factory presets
constexpr std::int32_t kParameters = 0;  // without exposed elements
constexpr int kChannels = 2;

// A host that ignores the announced channels may hand over fewer arrays or none.
bool hasChannel(float** inputs, float** outputs, int channel)
{
    return inputs != nullptr && outputs != nullptr && inputs[channel] != nullptr &&
           outputs[channel] != nullptr;
}

}  // namespace

ZVSTPlugin::ZVSTPlugin(audioMasterCallback host)
    : AudioEffectX(host, kPrograms, kParameters)
{
    setUniqueID(fourCharacters("ocmn"));
    setNumInputs(kChannels);
    setNumOutputs(kChannels);
    canMono(true);
    canProcessReplacing(true);
    programsAreChunks(true);
}

ZVSTPlugin::~ZVSTPlugin()
{
    // Ends with the body: the lock is not held while the interface thread is joined.
    const ZInterfaceLock lock;
    try {
        editor.reset();
    } catch (const ZException& exception) {
        exception.Report();
    }
}

std::intptr_t ZVSTPlugin::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void* ptr, float opt)
{
    if (IsAudioCall(opcode))
        return AudioEffectX::dispatcher(opcode, index, value, ptr, opt);
    const ZInterfaceLock lock;
    return AudioEffectX::dispatcher(opcode, index, value, ptr, opt);
}

// Some hosts switch processing on and off on the audio thread, which must not wait for a busy
// interface; others do so on the thread that loaded the plug-in.
bool ZVSTPlugin::IsAudioCall(std::int32_t opcode) const
{
    switch (opcode) {
    case effMainsChanged:
        return std::this_thread::get_id() != mEntryThread;
    case effProcessEvents:
    case effStartProcess:
    case effStopProcess:
        return true;
    default:
        return false;
    }
}

void ZVSTPlugin::resume()
{
    if (mWantsMidi)
        wantEvents();
}

void ZVSTPlugin::setSampleRate(float rate)
{
    if (std::isfinite(rate) && rate > 0.0f)
        AudioEffectX::setSampleRate(rate);
}

void ZVSTPlugin::setBlockSize(std::int32_t frames)
{
    if (frames > 0)
        AudioEffectX::setBlockSize(frames);
}

void ZVSTPlugin::processReplacing(float** inputs, float** outputs,
                                  std::int32_t sampleFrames) noexcept
{
    for (int channel = 0; channel < kChannels; ++channel) {
        // In place there is nothing to do, and the ranges of a copy must not meet.
        if (hasChannel(inputs, outputs, channel) && inputs[channel] != outputs[channel])
            std::copy_n(inputs[channel], std::max(sampleFrames, 0), outputs[channel]);
    }
}

void ZVSTPlugin::process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept
{
    for (int channel = 0; channel < kChannels; ++channel) {
        if (!hasChannel(inputs, outputs, channel))
            continue;
        const float* const in = inputs[channel];
        float* const out = outputs[channel];
        for (std::int32_t i = 0; i < sampleFrames; ++i)
            out[i] = static_cast<float>(static_cast<double>(out[i]) + static_cast<double>(in[i]));
    }
}

void ZVSTPlugin::setProgram(std::int32_t index)
{
    AudioEffectX::setProgram(index);
    mCurrentProgram = index;
}

// What the host could not read back is not read, and a text without an end does no harm.
void ZVSTPlugin::setProgramName(const char* text)
{
    mProgramName = readHostText(text, kVstMaxProgNameLen);
}

void ZVSTPlugin::getProgramName(std::span<char> text)
{
    writeHostText(mProgramName, text);
}

bool ZVSTPlugin::getVendorString(std::span<char> text)
{
    writeHostText("Orvane Inc.", text);
    return true;
}

}  // namespace orvane

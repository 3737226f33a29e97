// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/AudioEffectX.h"

#include "pluginwrappers/interface/VstOpcodes.h"

#include <cstddef>
#include <utility>

namespace orvane
{

namespace
{

std::uint8_t byteOrNone(std::intptr_t value)
{
    return std::in_range<std::uint8_t>(value) ? static_cast<std::uint8_t>(value) : std::uint8_t{0};
}

// The comparison refuses what is no number, too.
std::uint8_t byteOrNone(float value)
{
    return value >= 0.0f && value < 256.0f ? static_cast<std::uint8_t>(value) : std::uint8_t{0};
}

// The question carries two places for pointers, one of them as a number.
void writeNoArrangements(std::intptr_t inputPlace, void* outputPlace)
{
    if (inputPlace != 0)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface passes it so
        *reinterpret_cast<void**>(inputPlace) = nullptr;
    if (outputPlace != nullptr)
        *static_cast<void**>(outputPlace) = nullptr;
}

}  // namespace

std::intptr_t AudioEffectX::dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                       void* ptr, float opt)
{
    switch (opcode) {
    case effProcessEvents:
        return ptr != nullptr ? processEvents(static_cast<VstEvents*>(ptr)) : 1;
    case effGetProgramNameIndexed:
    case effGetVendorString:
    case effGetParameterProperties:
        return dispatchWithPointer(opcode, index, value, ptr);
    case effCanBeAutomated:
    case effGetNumProgramCategories:
    case effConnectInput:
    case effConnectOutput:
        return 1;
    case effGetPlugCategory:
        return kPlugCategEffect;
    case effSetBlockSizeAndSampleRate:
        return setBlockSizeAndSampleRate(hostNumber(value), opt);
    case effVendorSpecific:
        return vendorSpecific(index, value, ptr, opt);
    case effGetVstVersion:
        return kVstVersion;
    case effEditKeyDown:
    case effEditKeyUp:
    case effSetEditKnobMode:
        return dispatchKey(opcode, index, value, opt);
    case effGetCurrentMidiProgram:
        return -1;
    case effGetSpeakerArrangement:
        writeNoArrangements(value, ptr);
        return 0;
    case effSetTotalSampleToProcess:
        return value;
    default:
        return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
    }
}

std::intptr_t AudioEffectX::dispatchWithPointer(std::int32_t opcode, std::int32_t index,
                                                std::intptr_t value, void* ptr)
{
    if (ptr == nullptr)
        return 0;
    switch (opcode) {
    case effGetProgramNameIndexed:
        return getProgramNameIndexed(hostNumber(value), index,
                                     {static_cast<char*>(ptr), std::size_t{kVstMaxProgNameLen}});
    case effGetVendorString:
        return getVendorString({static_cast<char*>(ptr), std::size_t{kVstMaxVendorStrLen}});
    default:
        return getParameterProperties(index, static_cast<VstParameterProperties*>(ptr));
    }
}

std::intptr_t AudioEffectX::dispatchKey(std::int32_t opcode, std::int32_t index,
                                        std::intptr_t value, float opt)
{
    if (!editor)
        return 0;
    if (opcode == effSetEditKnobMode)
        return editor->setKnobMode(hostNumber(value));
    VstKeyCode key{index, byteOrNone(value), byteOrNone(opt)};
    return opcode == effEditKeyDown ? editor->onKeyDown(key) : editor->onKeyUp(key);
}

bool AudioEffectX::setBlockSizeAndSampleRate(std::int32_t frames, float rate)
{
    setSampleRate(rate);
    setBlockSize(frames);
    return true;
}

bool AudioEffectX::ioChanged()
{
    return callHost(audioMasterIOChanged) != 0;
}

bool AudioEffectX::updateDisplay()
{
    return callHost(audioMasterUpdateDisplay) != 0;
}

void AudioEffectX::wantEvents()
{
    callHost(audioMasterWantMidi, 0, 1);
}

bool AudioEffectX::beginEdit(std::int32_t index)
{
    return callHost(audioMasterBeginEdit, index) != 0;
}

bool AudioEffectX::endEdit(std::int32_t index)
{
    return callHost(audioMasterEndEdit, index) != 0;
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/AudioEffectX.h"

#include "pluginwrappers/interface/VstOpcodes.h"

#include <cstddef>
#include <utility>

namespace orvane
{

namespace
{

std::uint8_t byteOrZero(std::intptr_t value)
{
    return std::in_range<std::uint8_t>(value) ? static_cast<std::uint8_t>(value) : std::uint8_t{0};
}

// NaN gives 0, since it fails the comparison.
std::uint8_t byteOrZero(float value)
{
    return value >= 0.0f && value < 256.0f ? static_cast<std::uint8_t>(value) : std::uint8_t{0};
}

// The opcode passes two pointers to pointers, the first one as a number.
void writeNoArrangements(std::intptr_t inputAddress, void* outputAddress)
{
    if (inputAddress != 0)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface passes it so
        *reinterpret_cast<void**>(inputAddress) = nullptr;
    if (outputAddress != nullptr)
        *static_cast<void**>(outputAddress) = nullptr;
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
    VstKeyCode key{index, byteOrZero(value), byteOrZero(opt)};
    return opcode == effEditKeyDown ? editor->onKeyDown(key) : editor->onKeyUp(key);
}

bool AudioEffectX::setBlockSizeAndSampleRate(std::int32_t frames, float rate)
{
    setSampleRate(rate);
    setBlockSize(frames);
    return true;
}

void AudioEffectX::ioChanged()
{
    callHost(audioMasterIOChanged);
}

void AudioEffectX::updateDisplay()
{
    callHost(audioMasterUpdateDisplay);
}

void AudioEffectX::wantEvents()
{
    callHost(audioMasterWantMidi, 0, 1);
}

bool AudioEffectX::sizeWindow(std::int32_t width, std::int32_t height)
{
    return callHost(audioMasterSizeWindow, width, height) != 0;
}

void AudioEffectX::beginEdit(std::int32_t index)
{
    callHost(audioMasterBeginEdit, index);
}

void AudioEffectX::endEdit(std::int32_t index)
{
    callHost(audioMasterEndEdit, index);
}

}  // namespace orvane

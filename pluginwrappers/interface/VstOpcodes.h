// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// Opcodes of an effect's dispatcher, sent by the host. The numbers left out are not in use.
enum EffectOpcode : std::int32_t
{
    effOpen = 0,
    effClose,
    effSetProgram,
    effGetProgram,
    effSetProgramName,
    effGetProgramName,
    effGetParamLabel,
    effGetParamDisplay,
    effGetParamName,
    effGetVu,
    effSetSampleRate,
    effSetBlockSize,
    effMainsChanged,
    effEditGetRect,
    effEditOpen,
    effEditClose,
    effEditIdle = 19,
    effIdentify = 22,
    effGetChunk,
    effSetChunk,
    effProcessEvents,
    effCanBeAutomated,
    effString2Parameter,
    effGetNumProgramCategories,
    effGetProgramNameIndexed,
    effCopyProgram,
    effConnectInput,
    effConnectOutput,
    effGetInputProperties,
    effGetOutputProperties,
    effGetPlugCategory,
    effGetCurrentPosition,
    effGetDestinationBuffer,
    effOfflineNotify,
    effOfflinePrepare,
    effOfflineRun,
    effProcessVarIo,
    effSetSpeakerArrangement,
    effSetBlockSizeAndSampleRate,
    effSetBypass,
    effGetEffectName,
    effGetErrorText,
    effGetVendorString,
    effGetProductString,
    effGetVendorVersion,
    effVendorSpecific,
    effCanDo,
    effGetTailSize,
    effIdle,
    effGetIcon,
    effSetViewPosition,
    effGetParameterProperties,
    effKeysRequired,
    effGetVstVersion,
    effEditKeyDown,
    effEditKeyUp,
    effSetEditKnobMode,
    effGetMidiProgramName,
    effGetCurrentMidiProgram,
    effGetMidiProgramCategory,
    effHasMidiProgramsChanged,
    effGetMidiKeyName,
    effBeginSetProgram,
    effEndSetProgram,
    effGetSpeakerArrangement,
    effShellGetNextPlugin,
    effStartProcess,
    effStopProcess,
    effSetTotalSampleToProcess,
    effSetPanLaw,
    effBeginLoadBank,
    effEndLoadBank,
    effSetProcessPrecision,
    effGetNumMidiInputChannels,
    effGetNumMidiOutputChannels,
};

/// Opcodes of the host's callback: those that this plug-in sends or its offline host answers.
enum HostOpcode : std::int32_t
{
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterIOChanged = 13,
    audioMasterSizeWindow = 15,  // index is the width and value the height; 0 when refused
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
};

/// Answer to audioMasterGetCurrentProcessLevel: the host renders, as fast as it can.
constexpr std::int32_t kVstProcessLevelOffline = 4;

/// Answer to audioMasterGetLanguage: English.
constexpr std::int32_t kVstLangEnglish = 1;

/// Answer to effGetPlugCategory.
constexpr std::int32_t kPlugCategEffect = 1;
/// Answer to effGetVstVersion: 2.4.
constexpr std::int32_t kVstVersion = 2400;

/// Sizes in bytes, terminator included, of the buffers that a host passes for texts.
enum VstTextSize : std::int32_t
{
    kVstMaxProgNameLen = 24,
    /// The interface publishes 8 bytes, too few for a name; hosts pass at least 24.
    kVstMaxParamStrLen = 24,
    kVstMaxVendorStrLen = 64,
};

}  // namespace orvane

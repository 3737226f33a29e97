// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// What a host asks an effect's dispatcher. Numbers that are not named are never asked.
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

/// What an effect asks its host; those that this plug-in uses, and those that its offline host
/// answers beside.
enum HostOpcode : std::int32_t
{
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterIOChanged = 13,
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

/// Room in bytes, terminator included, of the texts that a host hands over to be written.
enum VstTextSize : std::int32_t
{
    kVstMaxProgNameLen = 24,
    /// The published 8 bytes hold no useful name; hosts hand over 24 at the least.
    kVstMaxParamStrLen = 24,
    kVstMaxVendorStrLen = 64,
};

}  // namespace orvane

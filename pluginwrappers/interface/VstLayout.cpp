// SPDX-License-Identifier: GPL-3.0-or-later
// Checks the offsets and sizes of the interface's records and numbers at compile time.

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/ERect.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstKeyCode.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "pluginwrappers/interface/VstParameterProperties.h"
#include "pluginwrappers/interface/VstTimeInfo.h"

#include <cstddef>

namespace orvane
{

static_assert(sizeof(void*) == 8, "the offsets below are those of a 64-bit host");

static_assert(offsetof(AEffect, dispatcher) == 8);
static_assert(offsetof(AEffect, process) == 16);
static_assert(offsetof(AEffect, setParameter) == 24);
static_assert(offsetof(AEffect, getParameter) == 32);
static_assert(offsetof(AEffect, numPrograms) == 40);
static_assert(offsetof(AEffect, flags) == 56);
static_assert(offsetof(AEffect, resvd1) == 64);
static_assert(offsetof(AEffect, resvd2) == 72);
static_assert(offsetof(AEffect, initialDelay) == 80);
static_assert(offsetof(AEffect, ioRatio) == 92);
static_assert(offsetof(AEffect, object) == 96);
static_assert(offsetof(AEffect, user) == 104);
static_assert(offsetof(AEffect, uniqueID) == 112);
static_assert(offsetof(AEffect, version) == 116);
static_assert(offsetof(AEffect, processReplacing) == 120);
static_assert(offsetof(AEffect, processDoubleReplacing) == 128);
static_assert(sizeof(AEffect) == 192);
static_assert(kEffectMagic == 0x56737450);

static_assert(offsetof(VstEvents, reserved) == 8);
static_assert(offsetof(VstEvents, events) == 16);
static_assert(offsetof(VstMidiEvent, midiData) == 24);
static_assert(sizeof(VstEvent) == 32 && sizeof(VstMidiEvent) == 32);

static_assert(offsetof(VstParameterProperties, label) == 12);
static_assert(offsetof(VstParameterProperties, flags) == 76);
static_assert(offsetof(VstParameterProperties, shortLabel) == 96);
static_assert(offsetof(VstParameterProperties, displayIndex) == 104);
static_assert(offsetof(VstParameterProperties, categoryLabel) == 112);
static_assert(sizeof(VstParameterProperties) == 152);

static_assert(offsetof(VstTimeInfo, timeSigNumerator) == 64);
static_assert(offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstTimeInfo) == 88);

static_assert(offsetof(VstKeyCode, virt) == 4 && sizeof(VstKeyCode) == 8);
static_assert(sizeof(ERect) == 8);

// The ends of the runs of opcodes that are numbered in sequence.
static_assert(effEditClose == 15 && effSetChunk == 24 && effGetVendorString == 47);
static_assert(effSetPanLaw == 74 && effGetNumMidiOutputChannels == 79);

}  // namespace orvane

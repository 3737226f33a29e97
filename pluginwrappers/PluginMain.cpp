// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the two functions that the library exports. They have a file of their own because test
// programs link the plug-in's other objects and define a main themselves.

#include "pluginwrappers/common/PluginEntry.h"

extern "C" {
// C++ reserves the name main for the start of a program, so the symbol is named for the assembler.
__attribute__((visibility("default"))) orvane::AEffect*
pluginMain(orvane::audioMasterCallback audioMaster) asm("main");

// Current hosts look this name up before main.
__attribute__((visibility("default"), alias("main"))) orvane::AEffect*
VSTPluginMain(orvane::audioMasterCallback audioMaster);
}

orvane::AEffect* pluginMain(orvane::audioMasterCallback audioMaster)
{
    return orvane::openPlugin(audioMaster);
}

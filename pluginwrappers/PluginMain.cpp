// SPDX-License-Identifier: GPL-3.0-or-later
// The library's two exported names. They stand alone in this file, since a program that links the
// plug-in's objects has a main of its own.

#include "pluginwrappers/common/PluginEntry.h"

extern "C" {
// C++ gives the name main to programs only, so the function gets it from the assembler.
__attribute__((visibility("default"))) orvane::AEffect*
pluginMain(orvane::audioMasterCallback audioMaster) asm("main");

// The name under which today's hosts look first.
__attribute__((visibility("default"), alias("main"))) orvane::AEffect*
VSTPluginMain(orvane::audioMasterCallback audioMaster);
}

orvane::AEffect* pluginMain(orvane::audioMasterCallback audioMaster)
{
    return orvane::openPlugin(audioMaster);
}

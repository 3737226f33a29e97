// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ERect.h"
#include "pluginwrappers/interface/VstKeyCode.h"

namespace orvane
{

class AudioEffect;

/// The plug-in interface's editor: what the host's editor calls reach. The default is an editor
/// that knows its parent and does nothing. [host thread]
class AEffEditor
{
public:
    explicit AEffEditor(AudioEffect* audioEffect)
        : effect(audioEffect)
    {
    }
    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;
    virtual ~AEffEditor() = default;

    [[nodiscard]] virtual AudioEffect* getEffect() { return effect; }
    /// Lends the editor's rectangle; true when there is one.
    virtual bool getRect(ERect** /*rect*/) { return false; }
    /// parent: the native window to live in; the host may hand over none.
    virtual bool open(void* parent)
    {
        systemWindow = parent;
        return false;
    }
    virtual void close() { systemWindow = nullptr; }
    [[nodiscard]] virtual bool isOpen() { return systemWindow != nullptr; }
    virtual void idle() {}
    /// True when the key was taken; others stay with the host.
    virtual bool onKeyDown(VstKeyCode& /*key*/) { return false; }
    virtual bool onKeyUp(VstKeyCode& /*key*/) { return false; }
    virtual bool onWheel(float /*distance*/) { return false; }
    virtual bool setKnobMode(int /*mode*/) { return false; }

protected:
    AudioEffect* effect;
    void* systemWindow = nullptr;
};

}  // namespace orvane

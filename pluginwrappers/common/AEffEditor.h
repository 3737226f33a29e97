// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/ERect.h"
#include "pluginwrappers/interface/VstKeyCode.h"

namespace orvane
{

class AudioEffect;

/// Base class of editors in the plug-in interface: the dispatcher's editor opcodes call its
/// operations. The base remembers the parent window and does nothing else. [host thread]
class AEffEditor
{
public:
    /// audioEffect owns the editor.
    explicit AEffEditor(AudioEffect* audioEffect)
        : effect(audioEffect)
    {
    }
    AEffEditor(const AEffEditor&) = delete;
    AEffEditor& operator=(const AEffEditor&) = delete;
    virtual ~AEffEditor() = default;

    [[nodiscard]] virtual AudioEffect* getEffect() { return effect; }
    /// Points rect to the editor's rectangle, which the editor keeps; false when it has none.
    virtual bool getRect(ERect** /*rect*/) { return false; }
    /// Shows the editor in parent, a window of the system; null when the host passes none.
    virtual bool open(void* parent)
    {
        systemWindow = parent;
        return false;
    }
    virtual void close() { systemWindow = nullptr; }
    [[nodiscard]] virtual bool isOpen() { return systemWindow != nullptr; }
    virtual void idle() {}
    /// Returns true when the editor used the key; the host handles the other keys itself.
    virtual bool onKeyDown(VstKeyCode& /*key*/) { return false; }
    virtual bool onKeyUp(VstKeyCode& /*key*/) { return false; }
    virtual bool onWheel(float /*distance*/) { return false; }
    virtual bool setKnobMode(int /*mode*/) { return false; }

protected:
    AudioEffect* effect;
    void* systemWindow = nullptr;
};

}  // namespace orvane

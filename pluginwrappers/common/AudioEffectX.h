// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AudioEffect.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstParameterProperties.h"

#include <cstdint>
#include <span>

namespace orvane
{

/// Base of effects with the operations that the plug-in interface's second version added. The
/// dispatcher answers most of the new opcodes itself, with a fixed value; the virtual operations
/// are those whose answer depends on the effect.
class AudioEffectX : public AudioEffect
{
public:
    using AudioEffect::AudioEffect;

    std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* ptr, float opt) override;

    /// Fills properties and returns true, or returns false for a parameter without properties.
    virtual bool getParameterProperties(std::int32_t /*index*/,
                                        VstParameterProperties* /*properties*/)
    {
        return false;
    }
    /// Writes the name of any program; false when there is no such program. category: -1 for all.
    virtual bool getProgramNameIndexed(std::int32_t /*category*/, std::int32_t /*index*/,
                                       std::span<char> /*text*/)
    {
        return false;
    }
    /// Handles the events of the next block. events is not null. [audio thread]
    virtual std::int32_t processEvents(VstEvents* /*events*/) { return 1; }
    virtual bool getVendorString(std::span<char> /*text*/) { return false; }
    /// Handles a request outside the interface; 0 for an unknown one.
    virtual std::intptr_t vendorSpecific(std::int32_t /*index*/, std::intptr_t /*value*/,
                                         void* /*ptr*/, float /*opt*/)
    {
        return 0;
    }
    /// Calls setSampleRate, then setBlockSize. [setup]
    virtual bool setBlockSizeAndSampleRate(std::int32_t frames, float rate);
    /// Asks the host to give the editor's window another size, in pixels; false when it refuses.
    bool sizeWindow(std::int32_t width, std::int32_t height);

protected:
    /// Notifies the host that the latency or the number of channels has changed.
    void ioChanged();
    /// Notifies the host that saved state has changed that is no parameter.
    void updateDisplay();
    /// Asks the host to send events.
    void wantEvents();
    /// Notifies the host that the user begins or ends a gesture on a parameter.
    void beginEdit(std::int32_t index);
    void endEdit(std::int32_t index);

private:
    std::intptr_t dispatchKey(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                              float opt);
    std::intptr_t dispatchWithPointer(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                      void* ptr);
};

}  // namespace orvane

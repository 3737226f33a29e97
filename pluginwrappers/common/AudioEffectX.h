// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AudioEffect.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstParameterProperties.h"

#include <cstdint>
#include <span>

namespace orvane
{

/// Upper half of the plug-in interface's effect: what the interface gained with its second version.
/// Most of its questions have one answer in this plug-in and are answered by the dispatcher itself;
/// the operations are those that an effect may want to answer in its own way.
class AudioEffectX : public AudioEffect
{
public:
    using AudioEffect::AudioEffect;

    std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* ptr, float opt) override;

    /// Fills properties when the parameter has some; true when it did.
    virtual bool getParameterProperties(std::int32_t /*index*/,
                                        VstParameterProperties* /*properties*/)
    {
        return false;
    }
    /// Name of any program; true when the program exists. category: -1 for all.
    virtual bool getProgramNameIndexed(std::int32_t /*category*/, std::int32_t /*index*/,
                                       std::span<char> /*text*/)
    {
        return false;
    }
    /// Takes the events of the block to come. [audio thread]
    virtual std::int32_t processEvents(VstEvents* /*events*/) { return 1; }
    virtual bool getVendorString(std::span<char> /*text*/) { return false; }
    /// A question that the interface does not know; 0 for one that the effect does not either.
    virtual std::intptr_t vendorSpecific(std::int32_t /*index*/, std::intptr_t /*value*/,
                                         void* /*ptr*/, float /*opt*/)
    {
        return 0;
    }
    /// Both at once. [setup]
    virtual bool setBlockSizeAndSampleRate(std::int32_t frames, float rate);

protected:
    /// Tells the host that latency or channels are others now.
    bool ioChanged();
    /// Tells the host that the state has changed in something that is no parameter.
    bool updateDisplay();
    /// Asks the host for events.
    void wantEvents();
    /// A gesture of the user on a parameter begins and ends.
    bool beginEdit(std::int32_t index);
    bool endEdit(std::int32_t index);

private:
    std::intptr_t dispatchKey(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                              float opt);
    std::intptr_t dispatchWithPointer(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                      void* ptr);
};

}  // namespace orvane

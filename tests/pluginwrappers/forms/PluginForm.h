// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/host/VstForm.h"
#include "pluginwrappers/lv2/Lv2Host.h"
#include "support/TestHost.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orvane
{

/// An instance of the built plug-in behind one of its interfaces, as a host has it, for what is the
/// same behind all of them. A test keeps a TestHost while it has instances.
class PluginForm
{
public:
    /// The parameters that all forms have, by the index that they share.
    enum Parameter : std::size_t
    {
        kCorrectPitch,
        kTranspose,
        kKey,
        kPitchRange,
        kCorrectionTime,
        kPitchTranspose,
        kFormantTranspose,
        kParameterCount,
    };
    /// The largest plain value of each; the least is 0.
    static constexpr std::array<float, kParameterCount> kLast{1, 1, 11, 4, 400, 24, 10};
    static constexpr std::size_t kBlock = 512;  // frames, the longest block

    PluginForm() = default;
    PluginForm(const PluginForm&) = delete;
    PluginForm& operator=(const PluginForm&) = delete;
    virtual ~PluginForm() = default;

    /// Begins and ends a stream.
    virtual void Start() = 0;
    virtual void Stop() = 0;
    /// Runs a block in place. [audio thread]
    virtual void Run(float* left, float* right, std::size_t frames) = 0;
    /// Sets a parameter to a plain value.
    virtual void Set(Parameter parameter, float value) = 0;
    /// Sends a MIDI message with the next block.
    virtual void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) = 0;
    /// Saves the current program as text, and restores one; false when it is refused.
    [[nodiscard]] virtual std::string Text() = 0;
    [[nodiscard]] virtual bool Restore(const std::string& text) = 0;

    /// Starts, and runs the voice through both channels; before is called with the place of each
    /// block. Returns the left output.
    [[nodiscard]] std::vector<float> Play(const std::vector<float>& voice,
                                          const std::function<void(std::size_t)>& before = {})
    {
        std::vector<float> left = voice;
        std::vector<float> right = voice;
        Start();
        for (std::size_t at = 0; at < voice.size(); at += kBlock) {
            if (before)
                before(at);
            Run(left.data() + at, right.data() + at, std::min(kBlock, voice.size() - at));
        }
        Stop();
        return left;
    }
};

class VstPluginForm : public PluginForm
{
public:
    explicit VstPluginForm(double rate = 44100.0, bool isOffline = true)
        : effect(mLibrary.Entry()(TestHost::callback))
    {
        TestHost::SetOffline(isOffline);
        ask(effect, effSetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
        ask(effect, effSetBlockSize, 0, kBlock);
    }
    ~VstPluginForm() override { closeEffect(effect); }

    void Start() override { ask(effect, effMainsChanged, 0, 1); }
    void Stop() override { ask(effect, effMainsChanged, 0, 0); }
    void Run(float* left, float* right, std::size_t frames) override
    {
        std::array<float*, 2> channels{left, right};
        effect->processReplacing(effect, channels.data(), channels.data(),
                                 static_cast<std::int32_t>(frames));
    }
    void Set(Parameter parameter, float value) override
    {
        effect->setParameter(effect, static_cast<std::int32_t>(parameter),
                             value / kLast[parameter]);
    }
    void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) override
    {
        sendMidi(effect, status, first, second);
    }
    [[nodiscard]] std::string Text() override { return chunkOf(effect, true); }
    [[nodiscard]] bool Restore(const std::string& text) override
    {
        return loadChunk(effect, text, true) == 1;
    }

private:
    const PluginLibrary mLibrary;

public:
    AEffect* const effect;
};

class Lv2PluginForm : public PluginForm
{
public:
    explicit Lv2PluginForm(Lv2Bundle& bundle, double rate = 44100.0, bool isOffline = true)
        : lv2(bundle, rate, kBlock)
        , mFirst(bundle.PortOf("pitchCorrectionOnOff"))
    {
        lv2.Value("freewheel") = isOffline ? 1.0f : 0.0f;
    }

    void Start() override { lv2.Activate(); }
    void Stop() override { lv2.Deactivate(); }
    void Run(float* left, float* right, std::size_t frames) override
    {
        for (std::uint32_t port = 0; port < 4; ++port)
            lilv_instance_connect_port(lv2.instance, port, port % 2 == 0 ? left : right);
        lv2.Run(static_cast<std::uint32_t>(frames));
    }
    void Set(Parameter parameter, float value) override { lv2.values[mFirst + parameter] = value; }
    void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) override
    {
        lv2.Send({status, first, second});
    }
    [[nodiscard]] std::string Text() override { return lv2.Text(); }
    [[nodiscard]] bool Restore(const std::string& text) override
    {
        return lv2.RestoreText(text) == LV2_STATE_SUCCESS;
    }

    Lv2Instance lv2;

private:
    const std::uint32_t mFirst;  // port of the first parameter
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/clap/ClapTestHost.h"
#include "pluginwrappers/host/PluginLibrary.h"
#include "pluginwrappers/lv2/Lv2Host.h"
#include "support/Signals.h"

namespace orvane
{

/// An instance of the built plug-in behind one of its interfaces, as a host has it, for what is the
/// same behind all of them. A test keeps a TestHost while it has instances.
struct PluginForm
{
    /// The parameters that all forms have, by the index that they share.
    enum Parameter : std::uint32_t
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
    PluginForm(PluginForm&&) = delete;
    virtual ~PluginForm() = default;

    /// Begins and ends a stream.
    virtual void Start() = 0;
    virtual void Stop() = 0;
    /// Runs a block in place. [audio thread]
    virtual void Run(float* left, float* right, std::size_t frames) = 0;
    /// Sets a parameter to a plain value.
    virtual void Set(Parameter parameter, float value) = 0;
    /// Returns where a parameter is between its least and its largest value, from 0 to 1.
    [[nodiscard]] virtual float Share(Parameter parameter) = 0;
    /// Loads one of the factory presets, counted from 0.
    virtual void LoadPreset(int index) = 0;
    /// Returns the frames that the host is told after a block.
    [[nodiscard]] virtual int Latency() = 0;
    /// Sends a MIDI message with the next block.
    virtual void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) = 0;
    /// Saves the current program as text, and restores one; false when it is refused.
    [[nodiscard]] virtual std::string Text() = 0;
    [[nodiscard]] virtual bool Restore(const std::string& text) = 0;
    /// Puts the window into one of the host's, gives it time, and takes it away.
    [[nodiscard]] virtual bool Show(xcb_window_t parent) = 0;
    virtual void Idle() = 0;
    virtual void Hide() = 0;

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

struct VstPluginForm : PluginForm
{
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
    [[nodiscard]] float Share(Parameter parameter) override
    {
        return effect->getParameter(effect, static_cast<std::int32_t>(parameter));
    }
    void LoadPreset(int index) override { ask(effect, effSetProgram, 0, index); }
    [[nodiscard]] int Latency() override { return effect->initialDelay; }
    void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) override
    {
        sendMidi(effect, status, first, second);
    }
    [[nodiscard]] std::string Text() override { return chunkOf(effect, true); }
    bool Restore(const std::string& text) override { return loadChunk(effect, text, true) == 1; }
    bool Show(xcb_window_t parent) override { return openEditor(effect, parent) == 1; }
    void Idle() override { ask(effect, effEditIdle); }
    void Hide() override { ask(effect, effEditClose); }

private:
    const PluginLibrary mLibrary;

public:
    AEffect* const effect;
};

struct Lv2PluginForm : PluginForm
{
    explicit Lv2PluginForm(Lv2Bundle& bundle, double rate = 44100.0, bool isOffline = true)
        : lv2(bundle, rate, kBlock)
        , mBundle(bundle)
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
    [[nodiscard]] float Share(Parameter parameter) override
    {
        const std::uint32_t port = mFirst + parameter;
        std::vector<float> least(lv2.values.size());
        std::vector<float> most(lv2.values.size());
        lilv_plugin_get_port_ranges_float(mBundle.plugin, least.data(), most.data(), nullptr);
        return (lv2.values[port] - least[port]) / (most[port] - least[port]);
    }
    void LoadPreset(int index) override
    {
        LilvState* const preset = mBundle.Preset(index + 1);
        lv2.Restore(preset);
        lilv_state_free(preset);
    }
    [[nodiscard]] int Latency() override { return static_cast<int>(lv2.Value("latency")); }
    void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) override
    {
        lv2.Send({status, first, second});
    }
    [[nodiscard]] std::string Text() override { return lv2.Text(); }
    [[nodiscard]] bool Restore(const std::string& text) override
    {
        return lv2.RestoreText(text) == LV2_STATE_SUCCESS;
    }
    [[nodiscard]] bool Show(xcb_window_t parent) override
    {
        mWindow = std::make_unique<Lv2WindowHost>(mBundle, lv2, parent);
        mWindow->setsPorts = false;  // a block may be running
        return mWindow->ui != nullptr;
    }
    void Idle() override
    {
        if (mWindow)
            static_cast<void>(mWindow->Idle());
    }
    void Hide() override { mWindow.reset(); }

    Lv2Instance lv2;

private:
    Lv2Bundle& mBundle;
    const std::uint32_t mFirst;  // port of the first parameter
    std::unique_ptr<Lv2WindowHost> mWindow;
};

struct ClapPluginForm : PluginForm
{
    explicit ClapPluginForm(const ClapLibrary& library, double rate = 44100.0,
                            bool isOffline = true)
        : clap(library)
        , mRate(rate)
    {
        clap.render->set(clap.plugin, isOffline ? CLAP_RENDER_OFFLINE : CLAP_RENDER_REALTIME);
    }

    void Start() override { clap.Start(mRate, kBlock); }
    void Stop() override { clap.Stop(); }
    void Run(float* left, float* right, std::size_t frames) override
    {
        clap.Run(left, right, static_cast<std::uint32_t>(frames));
    }
    void Set(Parameter parameter, float value) override
    {
        clap.events.Value(parameter, static_cast<double>(value));
        if (!clap.IsRunning())
            clap.Flush();
    }
    [[nodiscard]] float Share(Parameter parameter) override
    {
        clap_param_info info;
        EXPECT_TRUE(clap.params->get_info(clap.plugin, parameter, &info));
        return static_cast<float>((clap.Value(info.id) - info.min_value) /
                                  (info.max_value - info.min_value));
    }
    void LoadPreset(int index) override { EXPECT_TRUE(clap.LoadPreset(index + 1)); }
    int Latency() override { return static_cast<int>(clap.latency->get(clap.plugin)); }
    void Send(std::uint8_t status, std::uint8_t first, std::uint8_t second) override
    {
        clap.events.Midi({status, first, second});
    }
    [[nodiscard]] std::string Text() override { return clap.Text(); }
    [[nodiscard]] bool Restore(const std::string& text) override
    {
        const bool isTaken = clap.Load(text);
        EXPECT_EQ(clap.host.TakeLines().empty(), isTaken) << "a line for each refusal";
        return isTaken;
    }
    [[nodiscard]] bool Show(xcb_window_t parent) override
    {
        const clap_window window{kClapWindowX11, {parent}};
        return clap.gui->create(clap.plugin, kClapWindowX11, false) &&
               clap.gui->set_parent(clap.plugin, &window) && clap.gui->show(clap.plugin);
    }
    void Idle() override
    {
        if (clap.host.callbackRequests.exchange(0) > 0)
            clap.plugin->on_main_thread(clap.plugin);
    }
    void Hide() override { clap.gui->destroy(clap.plugin); }

    ClapInstance clap;

private:
    const double mRate;
};

enum class FormKind
{
    kVst,
    kLv2,
    kClap,
};
inline constexpr std::array kFormKinds{FormKind::kVst, FormKind::kLv2, FormKind::kClap};

/// A host that has all forms.
struct FormsHost
{
    [[nodiscard]] std::unique_ptr<PluginForm> Make(FormKind kind, bool isOffline = true,
                                                   double rate = 44100.0)
    {
        if (kind == FormKind::kVst)
            return std::make_unique<VstPluginForm>(rate, isOffline);
        if (kind == FormKind::kLv2)
            return std::make_unique<Lv2PluginForm>(bundle, rate, isOffline);
        return std::make_unique<ClapPluginForm>(clapLibrary, rate, isOffline);
    }

private:
    const TestHost host;
    Lv2Bundle bundle;
    ClapLibrary clapLibrary;
};

/// A voice between two notes, for long enough that the engine's output is heard.
inline std::vector<float> voiceAt(double rate)
{
    return harmonicTone(226.0, rate, static_cast<int>(1.5 * rate));
}

/// Returns the first place where two sounds differ; -1 for the same sounds.
inline long firstDifference(const std::vector<float>& one, const std::vector<float>& other)
{
    if (one.size() != other.size())
        return 0;
    const auto [left, right] = std::mismatch(one.begin(), one.end(), other.begin());
    return left == one.end() ? -1 : left - one.begin();
}

/// Adds an element with the value 1 that a state holds only where someone adds it: "AcceptMIDI",
/// which lets played notes in, or "tracking", for the fine one.
inline std::string switchedOn(std::string text, const std::string& name)
{
    return text.insert(text.find("<element name=\"pitchTranspose\""),
                       "<element name=\"" + name +
                           "\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"1\">\n"
                           "</element>\n");
}

}  // namespace orvane

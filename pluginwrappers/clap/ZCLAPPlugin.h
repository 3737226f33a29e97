// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/clap/ClapHost.h"
#include "pluginwrappers/core/ZEditorWindow.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "pluginwrappers/core/ZSpscQueue.h"
#include "pluginwrappers/interface/ClapExtensions.h"
#include "pluginwrappers/interface/ClapPlugin.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/views/ZWindowHost.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane
{

class ZElement;

/// The CLAP shell: an instance as its host sees it. It translates the interface; the plug-in itself
/// is a ZPluginCore.
///
/// A parameter's number is its place in plainParametersOf; its values are plain. What the user does
/// in the window waits in a queue for the next block or flush, which hands it to the host. Values
/// that arrive at the begin of the first block are in force in it: that block waits for the
/// interface lock once. No other block waits, unless the host renders offline.
///
/// Calls of the host that come on the wrong thread or in the wrong state are told to its log.
class ZCLAPPlugin : private ZPluginShell, private ZWindowHost
{
public:
    /// host outlives the object; functions are what the host calls. Builds nothing yet.
    /// [main thread]
    ZCLAPPlugin(const clap_host& host, const clap_plugin& functions);
    ~ZCLAPPlugin() override;

    /// The record that the host gets; its plugin_data is this object.
    [[nodiscard]] const clap_plugin& GetRecord() const { return mRecord; }

    /// Builds the plug-in. Throws ZException when it cannot be built. [main thread]
    void Init();

    /// Takes rate and longest block; false for what no host means. [main thread, not active]
    bool Activate(double sampleRate, std::uint32_t maxFrames);
    void Deactivate();  // [main thread, active]
    bool StartProcessing() noexcept;
    void StopProcessing() noexcept;
    /// Empties the stream. [audio thread]
    void Reset();
    /// Processes a block of any length; returns a ClapProcessStatus. [audio thread]
    std::int32_t Process(const clap_process& block) noexcept;
    /// Does what other threads have asked for. [main thread]
    void OnMainThread();

    // Parameters. Values and texts of numbers out of range are refused. [main thread]
    [[nodiscard]] std::uint32_t GetParameterCount() const;
    bool GetInfo(std::uint32_t index, clap_param_info& info) const;
    [[nodiscard]] std::optional<double> GetValue(clap_id parameter) const;
    [[nodiscard]] std::optional<std::string> GetText(clap_id parameter, double value) const;
    [[nodiscard]] std::optional<double> GetValueOfText(clap_id parameter, const char* text) const;
    /// Takes the host's values and hands out the user's edits. [audio thread while active, else
    /// main thread]
    void Flush(const clap_input_events* in, const clap_output_events* out) noexcept;

    /// More bytes than any state has; Load refuses as many.
    static constexpr std::size_t kLongestState = ZXMLDocument::kMaxBytes;

    /// The current program as text; Load throws what ZPluginCore::LoadPrograms throws.
    /// [main thread]
    [[nodiscard]] std::string Save();
    void Load(const std::string& text);
    /// Loads the factory preset of a key; false for one that there is not. [main thread]
    bool LoadPreset(const std::string& key);

    /// [main thread]
    [[nodiscard]] std::uint32_t GetLatency() const;
    /// [main or audio thread]
    [[nodiscard]] std::uint32_t GetTail() const noexcept;
    void SetOffline(bool isOffline) noexcept;

    // The window. [main thread]
    [[nodiscard]] bool HasWindow() const { return mEditor != nullptr; }
    bool CreateWindow();
    void DestroyWindow();
    /// Returns false for a scale that is no positive number.
    bool SetScale(double scale);
    [[nodiscard]] std::array<std::uint32_t, 2> GetWindowSize() const;
    bool SetParent(std::uintptr_t parent);
    bool ShowWindow();
    bool HideWindow();

    [[nodiscard]] ClapHost& GetHost() { return mHost; }
    /// What the host has brought the plug-in to. [any thread]
    [[nodiscard]] bool IsActive() const noexcept { return mIsActive; }
    [[nodiscard]] bool IsProcessing() const noexcept { return mIsProcessing; }

    // What the user does. [interface thread, under the interface lock]
    void QueueValue(std::size_t parameter);
    void QueueGesture(std::size_t parameter, bool begins);
    /// Saved state has changed that may be no parameter of the host shell's list.
    void StateChanged();

    /// The key of a factory preset, under which hosts find it again: it never changes.
    [[nodiscard]] static std::string KeyOf(std::int32_t preset);

private:
    struct Parameter
    {
        boost::shared_ptr<ZElement> element;
        float atStart;
        float lastTold;  // the value that the host knows; guarded by the interface lock
    };
    /// What waits to be told to the host.
    struct Edit
    {
        std::uint16_t type;  // of the event
        clap_id parameter;
        float value;
    };
    static constexpr std::uint32_t kEdits = 1024;

    bool HostIsOffline() override { return mIsOffline.load(std::memory_order_relaxed); }
    bool ResizeWindow(const ZPoint& size) override;
    void Queue(const Edit& edit);
    [[nodiscard]] const Parameter* Find(clap_id parameter) const;

    void TakeEvent(const clap_event_header& event) noexcept;
    void TakeEvents(const clap_input_events* events) noexcept;
    void HandOutEdits(const clap_output_events* out) noexcept;
    void DeliverToFirstBlock() noexcept;
    void RunBlock(const clap_process& block) noexcept;
    void RunAudio(std::uint32_t begin, std::uint32_t end) noexcept;
    std::int32_t ListenForSilence(std::uint32_t frames) noexcept;

    clap_plugin mRecord;
    ClapHost mHost;
    std::unique_ptr<ZPluginCore> mCore;      // null before Init
    std::vector<Parameter> mParameters;      // fixed after Init
    std::unique_ptr<ZEditorWindow> mEditor;  // null when the description has no window
    bool mIsWindowCreated = false;
    std::uintptr_t mParent = 0;
    ZSpscQueue<Edit, kEdits> mEdits;  // sender: whoever holds the interface lock
    std::atomic<bool> mIsDirty{false};
    std::atomic<bool> mMustRescan{false};
    std::atomic<bool> mIsOffline{false};
    std::atomic<bool> mIsQuiet{true};  // written by the audio thread
    std::atomic<bool> mIsActive{false};
    std::atomic<bool> mIsProcessing{false};
    std::uint32_t mMaxBlock = 1;

    // Used by the audio thread.
    std::array<float*, ZHostStream::kChannels> mInputs{};
    std::array<float*, ZHostStream::kChannels> mOutputs{};
    bool mIsFirstBlock = true;
    std::uint64_t mSilentFrames = 0;  // since the last input that was not 0
};

}  // namespace orvane

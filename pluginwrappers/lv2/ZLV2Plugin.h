// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/core/ZEditorWindow.h"
#include "pluginwrappers/core/ZPluginCore.h"
#include "pluginwrappers/lv2/Lv2Features.h"
#include "pluginwrappers/lv2/Lv2Ports.h"
#include "pluginwrappers/lv2/ZLV2Parameter.h"

#include <lv2/atom/atom.h>
#include <lv2/state/state.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace orvane
{

class ZLV2Editor;
class ZWindowHost;

/// The LV2 shell: an instance as its host sees it. It translates the interface; the plug-in itself
/// is a ZPluginCore.
///
/// The control ports are the host's: a port that changes sets its element, and a value that the
/// user sets in the window is handed to the host by the editor, which sets the port. In the first
/// block after Activate every port counts as changed. When that changes a value, the block waits
/// for the interface lock once, so that the stream begins with it; no other block waits, unless the
/// host renders offline.
class ZLV2Plugin : private ZPluginShell
{
public:
    /// options, which may be null, are the host's. Throws ZException when the plug-in cannot be
    /// built. The caller holds the interface lock. [host thread]
    ZLV2Plugin(double sampleRate, const Lv2Urids& urids, const LV2_Options_Option* options);
    ~ZLV2Plugin() override;

    /// Connects a port; data may be null. [audio thread, or host thread with audio stopped]
    void Connect(std::uint32_t port, void* data) noexcept;
    /// Empties the stream and delivers all that waits. [host thread, with audio stopped]
    void Activate();
    /// Processes a block of any length, 0 included; longer ones than announced are cut. Ports that
    /// are null count as silence, as their value before, or are left out. [audio thread]
    void Run(std::uint32_t frames) noexcept;

    /// Saves and restores the current program, also while audio runs. [any thread but audio's]
    LV2_State_Status Save(LV2_State_Store_Function store, LV2_State_Handle handle);
    LV2_State_Status Restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

    /// Fills in, or takes, the sample rate and the length of the longest block; returns
    /// LV2_Options_Status. [host thread, with audio stopped]
    std::uint32_t GetOptions(LV2_Options_Option* options) const;
    std::uint32_t SetOptions(const LV2_Options_Option* options);

    /// The editor's side; the caller holds the interface lock. [host thread]
    /// Places the window into parent for editor, which takes it from another one; false without a
    /// window or display. host, which the window asks for another size, lives until CloseEditor;
    /// scale is what it wishes as the number of pixels on a unit's side.
    bool OpenEditor(ZLV2Editor& editor, ZWindowHost& host, std::optional<double> scale,
                    std::uintptr_t parent);
    [[nodiscard]] bool HasEditor(const ZLV2Editor& editor) const { return mOpenFor == &editor; }
    [[nodiscard]] ZEditorWindow* GetEditorWindow() { return mEditor.get(); }

    /// What the user has done to a parameter in the window.
    struct Edit
    {
        enum class Kind
        {
            kBegin,
            kValue,
            kEnd,
        };
        std::uint32_t port;
        Kind kind;
        float value;
    };
    /// Returns the edits that the host has not been told of, in their order.
    [[nodiscard]] std::vector<Edit> TakeEdits();
    /// Takes the window away from editor, which ends a gesture in it, and returns what the host has
    /// not been told of. Does nothing when another editor has the window.
    [[nodiscard]] std::vector<Edit> CloseEditor(const ZLV2Editor& editor);

    /// Of the window. [interface thread]
    void BeginEdit(std::int32_t index);
    void EndEdit(std::int32_t index);
    void StateChanged() noexcept { mStateChanged.store(true, std::memory_order_relaxed); }

private:
    bool HostIsOffline() override { return mIsOffline; }
    void AddValue(std::vector<Edit>& edits, std::size_t index);
    void ReadControls(std::uint32_t frames) noexcept;
    void DeliverToFirstBlock() noexcept;
    void ReadMidi() noexcept;
    void RunAudio(std::uint32_t frames) noexcept;
    void WriteNotifications() noexcept;

    const Lv2Urids mUrids;
    ZPluginCore mCore;
    std::vector<std::unique_ptr<ZLV2Parameter>> mParameters;
    std::unique_ptr<ZEditorWindow> mEditor;  // null when the description has no window
    ZLV2Editor* mOpenFor = nullptr;          // the editor that shows the window
    ZWindowHost* mWindowHost = nullptr;      // of that editor
    std::vector<Edit> mEdits;                // guarded by the interface lock
    std::atomic<bool> mStateChanged{false};  // set by the interface thread, cleared by the audio's
    double mSampleRate = 0.0;                // Hz
    std::int32_t mMaxBlock;                  // samples

    // Ports, as connected. Used by the audio thread.
    std::array<float*, ZHostStream::kChannels> mInputs{};
    std::array<float*, ZHostStream::kChannels> mOutputs{};
    const LV2_Atom_Sequence* mMidiPort = nullptr;
    LV2_Atom_Sequence* mNotifyPort = nullptr;
    float* mLatencyPort = nullptr;
    const float* mFreeWheelPort = nullptr;
    std::vector<const float*> mParameterPorts;
    bool mIsOffline = false;
    bool mIsFirstBlock = true;
};

}  // namespace orvane

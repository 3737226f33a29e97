// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/core/ZAudioFaults.h"
#include "pluginwrappers/core/ZHostStream.h"
#include "pluginwrappers/core/ZMidiMessage.h"
#include "pluginwrappers/core/ZProgramBank.h"
#include "pluginwrappers/core/ZSpscQueue.h"
#include "pluginwrappers/core/ZStreamClock.h"
#include "zlib/common/objects/ZInterfaceThread.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvane
{

class ZAudioDocument;
class ZElement;
class ZPlugin;
class ZSignalBay;
class ZSignalLooper;
class ZWindow;

/// What the core asks of the shell of a plug-in interface.
class ZPluginShell
{
public:
    ZPluginShell() = default;
    ZPluginShell(const ZPluginShell&) = delete;
    ZPluginShell& operator=(const ZPluginShell&) = delete;
    virtual ~ZPluginShell() = default;

    /// Returns whether the host renders offline, so that the stream has to be the clock.
    /// [audio thread]
    [[nodiscard]] virtual bool HostIsOffline() = 0;
    /// Called at each tick of the timer, before anything is delivered: the shell tells the host
    /// what waits. [interface thread, under the interface lock]
    virtual void TimerTicks() {}
};

/// The plug-in behind every plug-in interface: it owns the application and moves the host's blocks,
/// events, parameters and programs to it. It knows no interface; a shell translates one.
///
/// Keeps the interface thread running. Changed values reach the engine in ticks: of the interface
/// thread's timer while the host plays, of the stream while it renders (see ZStreamClock). A tick
/// of the stream runs on the host's rendering thread and takes the interface lock.
///
/// Without an application it passes its two channels through without latency.
/// [host thread, under the interface lock] unless stated otherwise.
class ZPluginCore
{
public:
    /// app, which may be null, has been started. Routes the looper's input to the network of its
    /// document. shell outlives the core. Throws ZException. [setup]
    ZPluginCore(ZPluginShell& shell, std::unique_ptr<ZPlugin> app);
    ZPluginCore(const ZPluginCore&) = delete;
    ZPluginCore& operator=(const ZPluginCore&) = delete;
    /// Release has been called, under the interface lock, which is not held any more: the
    /// interface thread is joined.
    ~ZPluginCore();

    /// Ends dialogs and menus, which use what Release destroys.
    void EndModalRuns();
    /// Destroys window, document and application; reports a failure.
    void Release() noexcept;

    /// Returns null for a core without an application. [any thread]
    [[nodiscard]] ZPlugin* GetApp() const { return mApp.get(); }
    [[nodiscard]] bool HasDocument() const { return mDocument != nullptr; }
    /// Returns null when the description has no window.
    [[nodiscard]] const boost::shared_ptr<ZWindow>& GetWindow() const { return mWindow; }
    [[nodiscard]] ZProgramBank& GetPrograms() { return mPrograms; }
    [[nodiscard]] const ZProgramBank& GetPrograms() const { return mPrograms; }
    /// Returns the delay from input to output in samples. [any thread]
    [[nodiscard]] std::int32_t GetLatency() const noexcept { return mLatency; }

    /// Takes a rate in Hz; false when it is not a positive number or already set. [setup]
    bool SetSampleRate(float rate);
    /// Takes the length of the longest block; false when it is below 1 or above
    /// ZHostStream::kMaxBlockSize. [setup]
    bool SetBlockSize(std::int32_t frames);
    /// Empties FIFOs and network. Takes no lock: it touches only what the passes use, and none
    /// runs. [host thread or audio thread, with audio stopped]
    void EmptyStream();
    /// Forgets how far the stream is ahead. [any thread]
    void RestartClock() noexcept { mClock.Restart(); }
    /// Delivers all changes that wait, so that they are in force in the next block.
    void Deliver();
    /// As ZHostStream::Run, preceded by a tick when the stream is the clock. Faults are kept for
    /// the interface thread; the outputs are then unchanged. frames below 1 do nothing.
    /// [audio thread]
    void Run(float** inputs, float** outputs, std::int32_t frames,
             ZHostStream::Output output) noexcept;
    /// Keeps the exception that is being handled for the interface thread. [audio thread]
    void KeepFault() noexcept { mFaults.Keep(); }
    /// Returns whether a tick of the stream is running, in which the host must not be called.
    [[nodiscard]] bool IsTickingByStream() const { return mTicksByStream; }

    /// Passes a MIDI message to the document before it returns. Allocates. [any thread]
    void HandleMidi(const MidiBytes& midi);
    /// Leaves a MIDI message to the next tick; those beyond kMidiPerTick are dropped.
    /// [audio thread]
    void QueueMidi(const MidiBytes& midi) noexcept;

    [[nodiscard]] std::int32_t GetParameterCount() const;
    /// Returns null for an index out of range. [any thread]
    [[nodiscard]] boost::shared_ptr<ZElement> GetParameter(std::int32_t index) const;

    /// Returns the programs as text; empty without a document. Throws what ZProgramBank::Save does.
    [[nodiscard]] std::string SavePrograms(ZProgramBank::Extent extent);
    /// Restores programs, also while audio runs. Throws what ZProgramBank::Load does, with programs
    /// and state unchanged.
    void LoadPrograms(std::string_view text, ZProgramBank::Extent extent);
    /// Loads a factory preset into the current program, also while audio runs. Returns false for an
    /// index out of range. Throws what ZAudioDocument::LoadPreset throws, with the state unchanged.
    bool LoadFactoryPreset(std::int32_t index);

private:
    /// More messages than any player sends in the time of a tick.
    static constexpr std::uint32_t kMidiPerTick = 1024;

    [[nodiscard]] boost::shared_ptr<ZSignalLooper> GetSignalLooper() const;
    [[nodiscard]] boost::shared_ptr<ZSignalBay> GetNetwork() const;
    void RouteNetwork();
    void MeasureLatency();
    [[nodiscard]] bool AcceptTick();
    void TickByStream(std::int32_t frames, float rate) noexcept;
    void HandleQueuedMidi();

    ZPluginShell& mShell;
    ZInterfaceThread mInterfaceThread;  // declared before all that it serves
    ZAudioFaults mFaults;
    ZStreamClock mClock;
    ZHostStream mStream;
    ZSpscQueue<MidiBytes, kMidiPerTick> mMidi;
    std::unique_ptr<ZPlugin> mApp;
    boost::shared_ptr<ZAudioDocument> mDocument;
    boost::shared_ptr<ZWindow> mWindow;  // null when the description has none
    ZProgramBank mPrograms;
    std::int32_t mLatency = 0;    // samples; the network changes it in [setup] only
    bool mTicksByStream = false;  // guarded by the interface lock
};

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/common/AudioEffectX.h"
#include "pluginwrappers/common/ZAudioFaults.h"
#include "pluginwrappers/common/ZHostStream.h"
#include "pluginwrappers/common/ZProgramBank.h"
#include "pluginwrappers/common/ZStreamClock.h"
#include "zlib/common/documents/ZPlugin.h"
#include "zlib/common/objects/ZInterfaceThread.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

class ZAudioDocument;
class ZElement;
class ZSignalBay;
class ZSignalLooper;
class ZVSTEditor;
class ZWindow;

/// The effect object: the host's whole view of the plug-in. Lives from the entry call to effClose.
///
/// Keeps the interface thread alive, and holds the interface lock around each call of the
/// dispatcher but those that a host makes in the course of its audio. What goes wrong in those is
/// kept for the interface thread to report.
///
/// Changed values reach the engine at ticks: of the wall clock while a host plays, of the stream
/// itself while it renders, see ZStreamClock. A tick of the stream runs on the host's rendering
/// thread and takes the interface lock, the one place where audio waits for the interface.
///
/// Has an editor where the description has a window. Without an application it is a plain path: two
/// channels in, the same two out, no latency.
class ZVSTPlugin : public AudioEffectX
{
public:
    /// Takes over an application that has been started, routes its document's network behind the
    /// looper's input and tells the host the latency.
    /// Throws ZException when a part of the plug-in cannot be built. [host thread]
    explicit ZVSTPlugin(audioMasterCallback host, std::unique_ptr<ZPlugin> app = nullptr);
    ~ZVSTPlugin() override;

    /// Whether the host is asked for MIDI before processing begins. [setup]
    void SetWantsMidi(bool wantsMidi) { mWantsMidi = wantsMidi; }

    std::intptr_t dispatcher(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* ptr, float opt) override;

    /// Empties FIFOs and network. On the audio thread it does so without the interface lock: what
    /// it touches belongs to the passes, which are at rest.
    void suspend() override;
    /// On the thread that called the entry function all that is pending is delivered before the
    /// return, so that a stream begins with every earlier change in force, and the chunk is let go;
    /// on another, perhaps the audio thread, delivery is left to the ticks.
    void resume() override;
    /// A rate that is no positive number, or is in force, changes nothing.
    void setSampleRate(float rate) override;
    /// frames below 1 and above ZHostStream::kMaxBlockSize change nothing.
    void setBlockSize(std::int32_t frames) override;
    void processReplacing(float** inputs, float** outputs,
                          std::int32_t sampleFrames) noexcept override;
    void process(float** inputs, float** outputs, std::int32_t sampleFrames) noexcept override;
    /// Sends each event of MIDI to the document, now and on this thread.
    std::int32_t processEvents(VstEvents* events) override;

    /// Stores the value; the engine follows at the next tick. Ignored while the plug-in itself
    /// tells the host of a change. [any thread, audio thread included]
    void setParameter(std::int32_t index, float value) override;
    /// The value just set. [any thread, audio thread included]
    [[nodiscard]] float getParameter(std::int32_t index) override;
    void setParameterAutomated(std::int32_t index, float value) override;
    /// Tells the host of a change made in the plug-in: now, or from the interface thread when the
    /// tick runs on the host's rendering thread, where such a call can lock a host up.
    /// [whoever ticks]
    void TellHost(std::int32_t index);
    void getParameterDisplay(std::int32_t index, std::span<char> text) override;
    void getParameterName(std::int32_t index, std::span<char> text) override;
    /// Of switches only, which are elements with two values.
    bool getParameterProperties(std::int32_t index, VstParameterProperties* properties) override;
    using AudioEffectX::beginEdit;
    using AudioEffectX::endEdit;
    using AudioEffectX::updateDisplay;

    [[nodiscard]] std::int32_t getProgram() override { return mPrograms.GetCurrent(); }
    void setProgram(std::int32_t index) override;
    /// Not shown while programs are factory presets.
    void setProgramName(const char* text) override;
    void getProgramName(std::span<char> text) override;
    bool getProgramNameIndexed(std::int32_t category, std::int32_t index,
                               std::span<char> text) override;
    /// The bytes are the host's until the next call, until resume on the thread that called the
    /// entry function, or until effClose. A failure is reported and gives no bytes.
    std::int32_t getChunk(void** data, bool isPreset) override;
    /// What cannot be loaded is reported and changes nothing.
    std::int32_t setChunk(void* data, std::int32_t size, bool isPreset) override;
    bool getVendorString(std::span<char> text) override;
    /// Answers the one question of WindowPicture.h.
    std::intptr_t vendorSpecific(std::int32_t index, std::intptr_t value, void* ptr,
                                 float opt) override;

private:
    static constexpr std::int32_t kNotAutomating = -1;

    [[nodiscard]] bool IsEntryThread() const;
    [[nodiscard]] bool IsAudioCall(std::int32_t opcode) const;
    [[nodiscard]] boost::shared_ptr<ZSignalLooper> GetSignalLooper() const;
    [[nodiscard]] boost::shared_ptr<ZSignalBay> GetNetwork() const;
    [[nodiscard]] boost::shared_ptr<ZElement> GetParameterElement(std::int32_t index) const;
    void MakeEditor();
    [[nodiscard]] ZVSTEditor& GetEditor();
    void RouteNetwork();
    void ReleaseChunk();
    void RefreshLatency();
    [[nodiscard]] bool AcceptTick();
    void RunBlock(float** inputs, float** outputs, std::int32_t frames,
                  ZHostStream::Output output) noexcept;
    void TickByStream(std::int32_t frames, float rate) noexcept;
    [[nodiscard]] bool HostIsOffline();
    void SendPendingAutomation();

    ZInterfaceThread mInterfaceThread;  // first, since it outlives all that it serves
    const std::thread::id mEntryThread = std::this_thread::get_id();
    ZAudioFaults mFaults;
    ZStreamClock mClock;
    ZHostStream mStream;
    std::unique_ptr<ZPlugin> mApp;
    boost::shared_ptr<ZAudioDocument> mDocument;
    boost::shared_ptr<ZWindow> mWindow;  // null where the description has none
    ZProgramBank mPrograms;
    std::string mChunk;  // lent to the host
    // The parameter that is being told to the host, -1 at rest. Written by the interface thread.
    std::atomic<std::int32_t> mAutomatingParam{kNotAutomating};
    // Both guarded by the interface lock.
    bool mTicksByStream = false;              // a tick of the stream is running
    std::vector<std::int32_t> mToldNextBeat;  // parameters that wait for the interface thread
    bool mWantsMidi = false;
};

}  // namespace orvane

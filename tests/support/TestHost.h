// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/ERect.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/Standard.h"

namespace orvane
{

/// A call that a plug-in made of its host.
struct HostCall
{
    AEffect* effect;
    std::int32_t opcode;
    std::int32_t index;
    std::intptr_t value;
    float opt;
    std::thread::id thread;
};

/// The host's side of the interface: records the calls of its callback, on any thread. The callback
/// carries no object, so there is one record for the process; each TestHost starts an empty one.
struct TestHost
{
    using Reaction = std::function<void(AEffect*)>;

    /// As opcode of On: every call.
    static constexpr std::int32_t kEveryCall = -1;

    explicit TestHost(std::intptr_t versionAnswer = kVstVersion) { Reset(versionAnswer); }
    TestHost(TestHost&&) = delete;
    ~TestHost() { Reset(0); }

    /// Runs a reaction inside each call of the opcode, after the call has been recorded.
    static void On(std::int32_t opcode, Reaction reaction)
    {
        const std::lock_guard lock(TheRecord().mutex);
        TheRecord().reactions[opcode] = std::move(reaction);
    }
    /// Sets what the host answers to an opcode; it answers 0 to all others but the version.
    static void Answer(std::int32_t opcode, std::intptr_t answer)
    {
        const std::lock_guard lock(TheRecord().mutex);
        TheRecord().answers[opcode] = answer;
    }
    /// Sets whether the host says that it renders offline.
    static void SetOffline(bool offline) { TheRecord().offline = offline; }

    [[nodiscard]] static std::vector<HostCall> Calls()
    {
        const std::lock_guard lock(TheRecord().mutex);
        return TheRecord().calls;
    }
    [[nodiscard]] static int CountOf(std::int32_t opcode)
    {
        int count = 0;
        for (const HostCall& call : Calls())
            count += call.opcode == opcode ? 1 : 0;
        return count;
    }
    /// Returns the calls about parameters, "begin 4", "4=300" (in thousandths) and "end 4", and
    /// empties the record.
    static std::vector<std::string> TakeNotes()
    {
        const std::lock_guard lock(TheRecord().mutex);
        std::vector<std::string> notes;
        for (const HostCall& call : std::exchange(TheRecord().calls, {})) {
            const std::string index = std::to_string(call.index);
            if (call.opcode == audioMasterAutomate)
                notes.push_back(index + "=" + std::to_string(std::lround(call.opt * 1000.0f)));
            else if (call.opcode == audioMasterBeginEdit)
                notes.push_back("begin " + index);
            else if (call.opcode == audioMasterEndEdit)
                notes.push_back("end " + index);
        }
        return notes;
    }
    /// Returns the number of gestures in progress; -1 after a begin within a gesture or an end
    /// without one.
    [[nodiscard]] static int OpenGestures()
    {
        std::set<std::int32_t> open;
        for (const HostCall& call : Calls()) {
            if ((call.opcode == audioMasterBeginEdit && !open.insert(call.index).second) ||
                (call.opcode == audioMasterEndEdit && open.erase(call.index) == 0))
                return -1;
        }
        return static_cast<int>(open.size());
    }

    static std::intptr_t callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                  std::intptr_t value, void* /*ptr*/, float opt)
    {
        Record& record = TheRecord();
        if (opcode == audioMasterGetCurrentProcessLevel)  // sent with each block: neither locked
            return record.offline ? kVstProcessLevelOffline : 0;  // nor recorded
        std::vector<Reaction> reactions;
        std::intptr_t answer = 0;
        {
            const std::lock_guard lock(record.mutex);
            record.calls.push_back({effect, opcode, index, value, opt, std::this_thread::get_id()});
            for (const std::int32_t key : {kEveryCall, opcode})
                if (const auto found = record.reactions.find(key); found != record.reactions.end())
                    reactions.push_back(found->second);
            if (const auto found = record.answers.find(opcode); found != record.answers.end())
                answer = found->second;
        }
        for (const Reaction& reaction : reactions)
            reaction(effect);
        return answer;
    }

private:
    struct Record
    {
        std::mutex mutex;
        std::map<std::int32_t, std::intptr_t> answers;
        std::atomic<bool> offline = false;
        std::vector<HostCall> calls;
        std::map<std::int32_t, Reaction> reactions;
    };

    static Record& TheRecord()
    {
        static Record record;
        return record;
    }
    static void Reset(std::intptr_t versionAnswer)
    {
        Record& record = TheRecord();
        const std::lock_guard lock(record.mutex);
        record.answers = {{audioMasterVersion, versionAnswer}};
        record.offline = false;
        record.calls.clear();
        record.reactions.clear();
    }
};

/// How long a soak goes on: KESTRUNE_SOAK_SECONDS, otherwise two seconds.
inline std::chrono::duration<double> soakTime()
{
    const char* const seconds = std::getenv("KESTRUNE_SOAK_SECONDS");
    return std::chrono::duration<double>(seconds != nullptr ? std::atof(seconds) : 2.0);
}

/// Returns the text with a value of an element replaced, wherever the element stands in it.
inline std::string withValue(std::string text, const std::string& element,
                             const std::string& attribute, const std::string& value)
{
    const std::string name = "<element name=\"" + element + '"';
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
        at = text.find(attribute + "=\"", at) + attribute.size() + 2;
        text.replace(at, text.find('"', at) - at, value);
    }
    return text;
}

/// Sends an opcode to an effect.
inline std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::int32_t index = 0,
                         std::intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f)
{
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

/// Opens the effect's window in a window of the display, as hosts do; returns the effect's answer.
inline std::intptr_t openEditor(AEffect* effect, std::uintptr_t parent)
{
    return ask(effect, effEditOpen, 0, 0, reinterpret_cast<void*>(parent));
}

/// Returns the width and height that the effect's window has or will have, in pixels.
inline std::pair<int, int> editorSize(AEffect* effect)
{
    ERect* rect = nullptr;
    ask(effect, effEditGetRect, 0, 0, static_cast<void*>(&rect));
    return {rect->right - rect->left, rect->bottom - rect->top};
}

/// Returns a copy of the bytes of effGetChunk.
inline std::string chunkOf(AEffect* effect, bool isProgram)
{
    void* data = nullptr;
    const std::intptr_t size = ask(effect, effGetChunk, isProgram ? 1 : 0, 0, &data);
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

/// Restores a chunk from memory that ends with it, so that sanitizers detect a read beyond.
inline std::intptr_t loadChunk(AEffect* effect, const std::string& chunk, bool isProgram)
{
    const std::unique_ptr<char[]> bytes(new char[chunk.size()]);
    chunk.copy(bytes.get(), chunk.size());
    return ask(effect, effSetChunk, isProgram ? 1 : 0, static_cast<std::intptr_t>(chunk.size()),
               bytes.get());
}

/// Sends a MIDI message in an event of its own.
inline void sendMidi(AEffect* effect, int status, int first, int second)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.midiData[0] = static_cast<char>(status);
    event.midiData[1] = static_cast<char>(first);
    event.midiData[2] = static_cast<char>(second);
    VstEvents events{1, 0, {reinterpret_cast<VstEvent*>(&event)}};
    ask(effect, effProcessEvents, 0, 0, &events);
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/fake_plugin/FakePlugin.h"

#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "pluginwrappers/interface/VstTimeInfo.h"

#include <fmt/format.h>

#include <cstdio>
#include <deque>

namespace orvane
{

namespace
{

constexpr std::array<const char*, 4> kNames{"Correct Pitch", "Key", "Pitch Correcton Time",
                                            "Wobble"};
constexpr std::int32_t kTextRoom = 24;

FakePluginLog& fakeLog()
{
    static FakePluginLog log;
    return log;
}

/// Delays by its latency, and inverts the sound while "Correct Pitch" is on.
struct Fake
{
    audioMasterCallback host;
    std::string mode;
    AEffect effect{};
    std::array<float, kNames.size()> values{0.0f, 3.0f / 11.0f, 0.125f, 0.5f};
    std::array<std::deque<float>, 2> delayed{std::deque<float>(kFakeLatency),
                                             std::deque<float>(kFakeLatency)};
    int blocks = 0;  // started
};

Fake& fakeOf(AEffect* effect)
{
    return *static_cast<Fake*>(effect->object);
}

std::intptr_t writeText(void* room, const char* text)
{
    std::snprintf(static_cast<char*>(room), kTextRoom, "%s", text);
    return 1;
}

template <typename... Parts>
void note(fmt::format_string<Parts...> text, Parts&&... parts)
{
    fakeLog().push_back(fmt::format(text, std::forward<Parts>(parts)...));
}

std::intptr_t takeMessages(const VstEvents& events)
{
    const VstEvent* const* const places = events.events;
    for (std::int32_t i = 0; i < events.numEvents; ++i) {
        const auto& message = *reinterpret_cast<const VstMidiEvent*>(places[i]);
        note("{}: {:02x} {} {} after {}", message.type,
             static_cast<unsigned char>(message.midiData[0]), int{message.midiData[1]},
             int{message.midiData[2]}, message.deltaFrames);
    }
    return 1;
}

std::intptr_t giveChunk(void** place)
{
    *place = const_cast<char*>(kFakeChunk);
    return static_cast<std::intptr_t>(std::strlen(kFakeChunk));
}

std::intptr_t dispatch(AEffect* effect, std::int32_t opcode, std::int32_t index,
                       std::intptr_t value, void* ptr, float opt)
{
    Fake& fake = fakeOf(effect);
    switch (opcode) {
    case effGetParamName:
        return writeText(ptr, kNames.at(static_cast<std::size_t>(index)));
    case effGetEffectName:
        return writeText(ptr, "Fake");
    case effGetVendorString:
        return writeText(ptr, "Fakers");
    case effGetProgramNameIndexed:
        return index == 0 ? writeText(ptr, "First") : 0;
    case effGetProgram:
        return 1;
    case effGetProgramName:
        return writeText(ptr, "Second");
    case effProcessEvents:
        return takeMessages(*static_cast<const VstEvents*>(ptr));
    case effGetChunk:
        return giveChunk(static_cast<void**>(ptr));
    case effSetChunk:
        note("{} {}", index != 0 ? "program" : "bank",
             std::string_view(static_cast<const char*>(ptr), static_cast<std::size_t>(value)));
        return fake.mode != "picky";
    default:
        note("opcode {}: {} {:g}", opcode, value, opt);
        if (opcode == effClose)
            delete &fake;
        return 0;
    }
}

std::intptr_t askHost(Fake& fake, std::int32_t opcode, void* ptr = nullptr)
{
    return fake.host(&fake.effect, opcode, 0, 0, ptr, 0.0f);
}

void noteHost(Fake& fake)
{
    std::array<char, 64> product{};
    askHost(fake, audioMasterGetProductString, product.data());
    note("host {} {} {} {} {}", askHost(fake, audioMasterVersion),
         askHost(fake, audioMasterGetSampleRate), askHost(fake, audioMasterGetBlockSize),
         askHost(fake, audioMasterGetCurrentProcessLevel), product.data());
}

void beginBlock(Fake& fake, std::int32_t frames)
{
    if (fake.mode == "crash")
        std::abort();
    if (++fake.blocks == 1)
        noteHost(fake);
    const auto* const time =
        reinterpret_cast<const VstTimeInfo*>(askHost(fake, audioMasterGetTime));
    note("{} frames at {:g}, quarter {:.3f}", frames, time->samplePos, time->ppqPos);
    if ((fake.mode == "early" && fake.blocks == 1) || (fake.mode == "late" && fake.blocks == 10)) {
        fake.effect.initialDelay = kFakeLaterLatency;
        for (auto& channel : fake.delayed)
            channel.insert(channel.begin(), kFakeLaterLatency - kFakeLatency, 0.0f);
        askHost(fake, audioMasterIOChanged);
    }
}

void replace(AEffect* effect, float** inputs, float** outputs, std::int32_t frames)
{
    Fake& fake = fakeOf(effect);
    beginBlock(fake, frames);
    const float sign = fake.values[0] < 1.0f ? 1.0f : -1.0f;
    for (std::size_t c = 0; c < fake.delayed.size(); ++c) {
        for (std::int32_t i = 0; i < frames; ++i) {
            fake.delayed[c].push_back(inputs[c][i]);
            outputs[c][i] = sign * fake.delayed[c].front();
            fake.delayed[c].pop_front();
        }
    }
}

void setParameter(AEffect* effect, std::int32_t index, float value)
{
    fakeOf(effect).values.at(static_cast<std::size_t>(index)) = value;
    note("{} {:.2f}", kNames.at(static_cast<std::size_t>(index)), value);
}

/// A choice returns its step, truncated from the host's value.
float getParameter(AEffect* effect, std::int32_t index)
{
    const float value = fakeOf(effect).values.at(static_cast<std::size_t>(index));
    return index == 1 ? static_cast<float>(static_cast<int>(11.0f * value)) / 11.0f : value;
}

AEffect* openFake(audioMasterCallback host)
{
    fakeLog() = {};
    const char* const mode = std::getenv(kFakeMode);
    auto* const fake = new Fake{host, mode ? mode : ""};
    AEffect& effect = fake->effect;
    effect.magic = kEffectMagic;
    effect.dispatcher = dispatch;
    effect.setParameter = setParameter;
    effect.getParameter = getParameter;
    effect.processReplacing = replace;
    effect.numPrograms = 3;
    effect.numParams = static_cast<std::int32_t>(kNames.size());
    effect.numInputs = fake->mode == "mono" ? 1 : 2;
    effect.numOutputs = 2;
    effect.flags = fake->mode == "adds" ? 0 : effFlagsCanReplacing;
    effect.flags |= fake->mode == "chunkless" ? 0 : effFlagsProgramChunks;
    effect.initialDelay = kFakeLatency;
    effect.object = fake;
    effect.uniqueID = fourCharacters("fake");
    effect.version = 7;
    return &effect;
}

}  // namespace

}  // namespace orvane

extern "C" {

__attribute__((visibility("default"))) orvane::AEffect*
VSTPluginMain(orvane::audioMasterCallback host)
{
    static orvane::AEffect noEffect{};
    const char* const mode = std::getenv(orvane::kFakeMode);
    if (mode && std::strcmp(mode, "refuse") == 0)
        return nullptr;
    if (mode && std::strcmp(mode, "nomagic") == 0)
        return &noEffect;
    return orvane::openFake(host);
}

__attribute__((visibility("default"))) orvane::FakePluginLog* fakePluginLog()
{
    return &orvane::fakeLog();
}
}

#include "tools/fake_plugin/FakePlugin.h"

#include "pluginwrappers/common/AEffect.h"
#include "pluginwrappers/common/VstEvents.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/VstTimeInfo.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

/// Delays by its latency, and turns the sound over where "Correct Pitch" is on.
struct Fake
{
    audioMasterCallback host;
    std::string mode;
    AEffect effect{};
    std::array<float, kNames.size()> values{0.0f, 3.0f / 11.0f, 0.125f, 0.5f};
    std::array<std::deque<float>, 2> delayed{};
    std::int64_t frame = 0;  // taken in
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

void logEvent(const Fake& fake, const std::string& event)
{
    fakeLog().events.push_back(std::to_string(fake.frame) + ": " + event);
}

std::intptr_t takeMessages(const Fake& fake, const VstEvents& events)
{
    for (std::int32_t i = 0; i < events.numEvents; ++i) {
        const VstEvent* const* places = events.events;
        const auto& message = *reinterpret_cast<const VstMidiEvent*>(places[i]);
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%d %02x %d %d after %d", message.type,
                      static_cast<unsigned char>(message.midiData[0]), message.midiData[1],
                      message.midiData[2], message.deltaFrames);
        logEvent(fake, text.data());
    }
    return 1;
}

std::intptr_t giveChunk(void** place)
{
    static std::string chunk = kFakeChunk;
    *place = chunk.data();
    return static_cast<std::intptr_t>(chunk.size());
}

std::intptr_t takeChunk(const Fake& fake, bool isProgram, const char* data, std::intptr_t size)
{
    const std::string text(data, static_cast<std::size_t>(size));
    fakeLog().chunks.push_back((isProgram ? "program " : "bank ") + text);
    return fake.mode != "picky";
}

std::intptr_t dispatch(AEffect* effect, std::int32_t opcode, std::int32_t index,
                       std::intptr_t value, void* ptr, float /*opt*/)
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
        return takeMessages(fake, *static_cast<const VstEvents*>(ptr));
    case effGetChunk:
        return giveChunk(static_cast<void**>(ptr));
    case effSetProgram:
        fakeLog().opcodes.push_back(opcode);
        logEvent(fake, "program " + std::to_string(value));
        break;
    case effSetChunk:
        fakeLog().opcodes.push_back(opcode);
        return takeChunk(fake, index != 0, static_cast<const char*>(ptr), value);
    default:
        fakeLog().opcodes.push_back(opcode);
        break;
    }
    if (opcode == effClose)
        delete &fake;
    return 0;
}

std::intptr_t askHost(Fake& fake, std::int32_t opcode, void* ptr = nullptr)
{
    return fake.host(&fake.effect, opcode, 0, 0, ptr, 0.0f);
}

std::string hostOf(Fake& fake)
{
    std::string host;
    for (const std::int32_t opcode :
         {audioMasterVersion, audioMasterGetSampleRate, audioMasterGetBlockSize,
          audioMasterGetCurrentProcessLevel, audioMasterGetLanguage})
        host += std::to_string(askHost(fake, opcode)) + " ";
    std::array<char, 64> text{"sendVstMidiEvent"};
    host += std::to_string(askHost(fake, audioMasterCanDo, text.data()));
    for (const std::int32_t opcode : {audioMasterGetVendorString, audioMasterGetProductString}) {
        askHost(fake, opcode, text.data());
        host += std::string(" ") + text.data();
    }
    return host;
}

void changeLatency(Fake& fake)
{
    fake.effect.initialDelay = kFakeLaterLatency;
    for (auto& channel : fake.delayed)
        channel.insert(channel.begin(), kFakeLaterLatency - kFakeLatency, 0.0f);
    askHost(fake, audioMasterIOChanged);
}

void logBlock(Fake& fake, std::int32_t frames)
{
    FakePluginLog& log = fakeLog();
    if (log.blocks.empty())
        log.host = hostOf(fake);
    log.blocks.push_back(frames);
    const auto* const time =
        reinterpret_cast<const VstTimeInfo*>(askHost(fake, audioMasterGetTime));
    log.positions.push_back(time->samplePos);
    log.quarters.push_back(time->ppqPos);
}

void replace(AEffect* effect, float** inputs, float** outputs, std::int32_t frames)
{
    Fake& fake = fakeOf(effect);
    logBlock(fake, frames);
    const std::size_t block = fakeLog().blocks.size();
    if ((fake.mode == "early" && block == 1) || (fake.mode == "late" && block == 10))
        changeLatency(fake);
    if (fake.mode == "automates")
        askHost(fake, audioMasterAutomate);
    fake.frame += frames;
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
    Fake& fake = fakeOf(effect);
    fake.values.at(static_cast<std::size_t>(index)) = value;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s %.2f", kNames.at(static_cast<std::size_t>(index)),
                  static_cast<double>(value));
    logEvent(fake, text.data());
}

/// A choice gives the position that it has taken, cut down from the host's value.
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
    for (auto& channel : fake->delayed)
        channel.assign(kFakeLatency, 0.0f);
    AEffect& effect = fake->effect;
    effect.magic = kEffectMagic;
    effect.dispatcher = dispatch;
    effect.setParameter = setParameter;
    effect.getParameter = getParameter;
    effect.processReplacing = replace;
    effect.numPrograms = 3;
    effect.numParams = static_cast<std::int32_t>(kNames.size());
    effect.numInputs = effect.numOutputs = fake->mode == "mono" ? 1 : 2;
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

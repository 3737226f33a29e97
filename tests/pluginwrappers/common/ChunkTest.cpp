// SPDX-License-Identifier: GPL-3.0-or-later
// States that return from their chunk, and damaged chunks.

#include "kestrune/common/pitch/ZPsolaBay.h"
#include "pluginwrappers/common/ChunkCheck.h"
#include "support/BoxRecorder.h"
#include "support/Signals.h"
#include "support/Test.h"
#include "support/TextMutation.h"
#include "tools/singer/Singer.h"
#include "zlib/common/documents/ZAudioDocument.h"

using namespace orvane;

namespace
{

constexpr const char* kElementsOfTheUser =
    "pitchCorrectionOnOff transposeOnOff key intonation sourceType pitchReference pitchTranspose "
    "formantTranspose scale PitchShift FormantShift detune pitchCorrectionTime ignoredNotes "
    "notesInScale tracking";
// The last two follow from others.
constexpr const char* kSavedElements =
    "PitchShift FormantShift pitchCorrectionOnOff currentScaleModified transposeOnOff key "
    "CustomScaleNames intonation sourceType detune pitchCorrectionTime pitchReference ignoredNotes "
    "pitchTranspose formantTranspose currentCustomScale customScaleTones currentScaleIndex "
    "tracking scale notesInScale";

/// Returns the number of random states and of random chunks: 100, or KESTRUNE_RANDOM_STATES.
int randomStates()
{
    const char* const count = std::getenv("KESTRUNE_RANDOM_STATES");
    return count != nullptr ? std::atoi(count) : 100;
}

/// Returns an element's value as text: a float in six digits, others exactly.
std::string valueOf(const ZElement& element)
{
    std::ostringstream value;
    if (element.GetType() == ZElement::ZFLOAT) {
        value << element.GetZFloat();
    } else if (element.GetType() == ZElement::ZBUFFER) {
        value << element.GetZBuffer()->EncodeValues();
    } else {
        value << element.GetDiscrete();
        for (std::int32_t i = 0; i < element.CountDiscreteValues(); ++i)
            value << ", " << element.GetDiscreteString(i)->ToNarrow();
    }
    return value.str();
}

/// Makes random changes, each of which the window allows.
struct RandomUser
{

    void Work(const ProductInstance& plugin)
    {
        const ZInterfaceLock lock;
        if (Whether())
            AddScales(plugin);
        std::istringstream names(kElementsOfTheUser);
        for (std::string name; names >> name;) {
            if (Whether())
                Change(plugin.Element(name));
            plugin.Tick();
        }
    }

    bool Whether() { return pick(mRandom, 2) == 0; }
    void Change(ZElement& element)
    {
        if (element.GetType() == ZElement::ZDISCRETE) {
            const auto count = static_cast<std::size_t>(element.CountDiscreteValues());
            element.SetDiscrete(static_cast<std::int32_t>(pick(mRandom, count)), false);
        } else if (element.GetType() == ZElement::ZFLOAT) {
            std::uniform_real_distribution<float> values(element.Min(), element.Max());
            element.SetZFloat(values(mRandom), false);
        } else {
            ZBuffer flags(kDegrees, "flags");
            for (int degree = 0; degree < kDegrees; ++degree)
                flags.Data()[degree] = degree == 0 || Whether() ? 1.0f : 0.0f;
            element.SetZBuffer(flags, false);
        }
    }
    void AddScales(const ProductInstance& plugin)
    {
        const auto document =
            boost::dynamic_pointer_cast<ZAudioDocument>(plugin.app->GetCurrentDocument());
        const auto bay = boost::dynamic_pointer_cast<ZPsolaBay>(
            document->GetOutputNetwork()->FindBay("PsolaBay"));
        for (std::size_t i = pick(mRandom, 5); i > 0; --i) {
            const std::int32_t degrees[] = {static_cast<std::int32_t>(1 + pick(mRandom, 5)),
                                            static_cast<std::int32_t>(6 + pick(mRandom, 6))};
            bay->AddCustomScale("Mine " + std::to_string(i), degrees);
        }
    }

    std::mt19937 mRandom;
};

}  // namespace

TEST(ChunkTest, EveryStateReturnsInANewInstance)
{
    const BoxRecorder boxes;
    for (int seed = 0; seed < randomStates(); ++seed) {
        SCOPED_TRACE(seed);
        const ProductInstance saved;
        RandomUser{std::mt19937(static_cast<unsigned>(seed))}.Work(saved);
        const bool isProgram = seed % 2 != 0;
        const ProductInstance loaded;
        ASSERT_EQ(loadChunk(loaded.effect, chunkOf(saved.effect, isProgram), isProgram), 1);
        loaded.Tick();
        std::istringstream names(kSavedElements);
        for (std::string name; names >> name;)
            ASSERT_EQ(valueOf(loaded.Element(name)), valueOf(saved.Element(name))) << name;
        if (seed >= 4)
            continue;
        saved.LoadProgram(saved.Program());  // rounds the values to the digits of a chunk
        const std::vector<float> voice = steadyVowel(Vowel::kA, 210.0, 44100.0, 2.0);
        EXPECT_EQ(loaded.Play(voice), saved.Play(voice));
    }
}

TEST(ChunkTest, MalformedChunksDoNoHarm)
{
    const BoxRecorder boxes;
    ChunkCheck check;
    const std::string program = "<VST_Program Number=\"0\">\n";
    const std::string element = "<element name=\"PitchShift\" type=\"ZFLOAT\" floatvalue=\"";
    const std::size_t kHuge = 10'000'000;
    std::string many;
    while (many.size() < kHuge)
        many += program + "</VST_Program>\n";
    std::string deep = program;
    while (deep.size() < kHuge / 10)
        deep += "<a>";
    for (const std::string& bytes :
         {std::string(), std::string(1, '\0'), std::string("<"), program, std::string(kHuge, '<'),
          std::string(kHuge, ' '), std::move(many), std::move(deep),
          program + element + "nan\" /></VST_Program>",
          program + element + "inf\" /></VST_Program>",
          program + element + "-1e39\" /></VST_Program>",
          program + element + std::string(100'000, '9') + "\" /></VST_Program>",
          program + "<element name=\"key\" int32value=\"99999999999\" /></VST_Program>",
          program + "<element name=\"currentScaleIndex\" floatvalue=\"-3e38\" /></VST_Program>",
          program + "<element name=\"CustomScaleNames\" int32value=\"-7\" /></VST_Program>",
          program + "<element name=\"ignoredNotes\"><buffer length=\"12\"><data values=\"" +
              std::string(100'000, '0') + "\" /></buffer></element></VST_Program>",
          program + "<element name=\"" + std::string(100'000, 'x') + "\" /></VST_Program>"})
        for (const bool isProgram : {false, true})
            EXPECT_EQ(check.FaultAfter(bytes, isProgram), "") << bytes.substr(0, 200);
}

TEST(ChunkTest, RandomlyDamagedChunksDoNoHarm)
{
    const BoxRecorder boxes;
    ChunkCheck check;
    const std::string program = check.Start().substr(0, check.Start().find("<VST_Program", 1));
    std::mt19937 random(20240612);
    for (int i = 0; i < randomStates(); ++i) {
        std::string text = program;
        for (std::size_t spots = 1 + pick(random, 4); spots > 0; --spots)
            mutate(text, random);
        if (i % 3 == 0)
            text.resize(pick(random, text.size()));
        ASSERT_EQ(check.FaultAfter(text, i % 2 != 0), "") << i;
    }
}

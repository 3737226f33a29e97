// SPDX-License-Identifier: GPL-3.0-or-later
// Programs and chunks of the shipped plug-in.

#include "pluginwrappers/common/ProductInstance.h"
#include "support/BoxRecorder.h"
#include "support/SmallPlugin.h"
#include "support/Test.h"

using namespace orvane;

namespace
{

constexpr std::int32_t kAdultToChild = 1;
constexpr std::int32_t kPitchTranspose = 5;  // as a parameter

struct ZProgramBankTest : testing::Test
{
    [[nodiscard]] std::string Name(std::int32_t opcode, std::int32_t index = 0) const
    {
        std::array<char, kVstMaxProgNameLen> room;
        room.fill('x');
        plugin.Ask(opcode, index, -1, room.data());
        return room.data();
    }
    [[nodiscard]] std::pair<float, float> Shifts() const
    {
        return {plugin.Element("PitchShift").GetZFloat(),
                plugin.Element("FormantShift").GetZFloat()};
    }

    BoxRecorder boxes;
    const ProductInstance plugin;
};

std::vector<std::string> programsOf(const std::string& bank)
{
    std::vector<std::string> programs;
    const std::string end = "</VST_Program>\n";
    for (std::size_t at = 0; at < bank.size();) {
        const std::size_t next = bank.find(end, at) + end.size();
        programs.push_back(bank.substr(at, next - at));
        at = next;
    }
    return programs;
}

}  // namespace

TEST_F(ZProgramBankTest, TheFactoryPresetsAreTheProgramsAndAreLoadedWhenTheHostSetsThem)
{
    plugin.Tick();
    EXPECT_EQ(Shifts(), std::pair(0.0f, 0.0f)) << "none at the start";
    std::string own = "Mine";
    plugin.Ask(effSetProgramName, 0, 0, own.data());
    plugin.Ask(effSetProgram, 0, kAdultToChild);
    EXPECT_EQ(Name(effGetProgramName), "Adult to Child");
    EXPECT_EQ(Name(effGetProgramNameIndexed, 6), "Woman to Man");
    EXPECT_EQ(plugin.Element("scale").GetDiscrete(), 0);
    plugin.Tick();
    EXPECT_EQ(Shifts(), std::pair(1200.0f, 800.0f));
    for (const std::int32_t index : {-1, 7, INT32_MAX})
        EXPECT_EQ(Name(effGetProgramNameIndexed, index), "");
}

TEST_F(ZProgramBankTest, AProgramKeepsItsEditsWhileAnotherIsCurrent)
{
    ZElement& detune = plugin.Element("detune");
    plugin.Ask(effSetProgram, 0, 2);
    detune.SetZFloat(12.5f, false);
    plugin.Ask(effSetProgram, 0, 3);
    EXPECT_EQ(detune.GetZFloat(), -1.68539f);
    plugin.Ask(effSetProgram, 0, 2);
    EXPECT_EQ(detune.GetZFloat(), 12.5f);
}

TEST_F(ZProgramBankTest, AChunkIsTheTextOfOneOrAllProgramsAndSurvivesAStartOnTheAudioThread)
{
    plugin.Ask(effSetProgram, 0, 4);
    void* data = nullptr;
    const auto size = static_cast<std::size_t>(plugin.Ask(effGetChunk, 0, 0, &data));
    std::thread([this] { plugin.Ask(effMainsChanged, 0, 1); }).join();
    const std::string bank(static_cast<const char*>(data), size);
    plugin.Ask(effMainsChanged, 0, 1);
    // A program that was current has the document's name, any other that of its preset.
    EXPECT_TRUE(bank.starts_with("<VST_Program Number=\"0\">\n<preset "
                                 "name=\"Untitled Media File 1\" "
                                 "class=\"ZAudioDocumentClass\" version=\"1.0\">\n"));
    EXPECT_NE(bank.find("<VST_Program Number=\"1\">\n<preset name=\"Adult to Child\" "),
              std::string::npos);
    EXPECT_TRUE(bank.ends_with("</preset>\n</VST_Program>\n"));
    EXPECT_EQ(programsOf(bank).size(), 7u);
    EXPECT_EQ(plugin.Program(), programsOf(bank)[4]);
    EXPECT_EQ(plugin.Bank(), bank);
}

TEST_F(ZProgramBankTest, AChunkBeyondTheLargestTextIsRefusedWithAMessage)
{
    const std::string largest(static_cast<std::size_t>(ZXMLDocument::kMaxBytes), ' ');
    EXPECT_EQ(plugin.LoadBank(largest), 1);
    EXPECT_EQ(plugin.LoadBank(largest + ' '), 0);
    EXPECT_EQ(boxes.boxes.size(), 1u);
}

TEST_F(ZProgramBankTest, ProgramsAreReadInOrderAndThoseBeyondTheLastAreIgnored)
{
    std::vector<std::string> programs = programsOf(plugin.Bank());
    std::swap(programs[0], programs[kAdultToChild]);
    std::string bank;
    for (int i = 0; i < 3; ++i)
        for (const std::string& program : programs)
            bank += program;
    EXPECT_EQ(plugin.LoadBank(bank), 1);
    EXPECT_EQ(Shifts(), std::pair(1200.0f, 800.0f));
    EXPECT_EQ(programsOf(plugin.Bank()).size(), 7u);
    plugin.Ask(effSetProgram, 0, kAdultToChild);
    EXPECT_NEAR(Shifts().first, 0.0f, 1e-6f);
    EXPECT_EQ(plugin.Ask(effGetProgram), kAdultToChild);
}

TEST_F(ZProgramBankTest,
       ABankWithoutProgramsReloadsTheCurrentOneAndAProgramChunkWithoutOneIsRefused)
{
    const std::string before = (plugin.LoadBank(plugin.Bank()), plugin.Program());
    plugin.Element("detune").SetZFloat(12.5f, false);
    EXPECT_EQ(plugin.LoadProgram("<preset></preset>"), 0);
    EXPECT_EQ(plugin.Element("detune").GetZFloat(), 12.5f);
    EXPECT_EQ(boxes.boxes.size(), 1u);
    EXPECT_EQ(plugin.LoadBank("\n"), 1);
    EXPECT_EQ(plugin.Program(), before);
}

TEST_F(ZProgramBankTest, ARestoredShiftIsNotOverwrittenByAnEarlierChoice)
{
    plugin.Ask(effSetProgram, 0, kAdultToChild);
    const std::string chunk = plugin.Bank();
    for (const bool waits : {false, true}) {
        SCOPED_TRACE(waits);
        const ProductInstance fresh;
        const auto pitchShift = [&] { return fresh.Element("PitchShift").GetZFloat(); };
        fresh.effect->setParameter(fresh.effect, kPitchTranspose, 1.0f);
        if (waits)
            locked([&] { fresh.Element("pitchTranspose").FlushMark(fresh.app); });
        fresh.Ask(effSetProgram, 0, kAdultToChild);
        EXPECT_EQ(fresh.LoadBank(chunk), 1);
        fresh.Tick();
        fresh.Tick();
        EXPECT_EQ(pitchShift(), 1200.0f);
        fresh.effect->setParameter(fresh.effect, kPitchTranspose, 0.75f);
        fresh.Tick();
        EXPECT_EQ(pitchShift(), -600.0f) << "a later choice counts";
    }
}

TEST_F(ZProgramBankTest, ADamagedChunkIsRefusedAndChangesNothing)
{
    plugin.Ask(effSetProgram, 0, 3);
    const std::string before = (plugin.LoadProgram(plugin.Program()), plugin.Program());
    // The shift precedes the damage, so it has been loaded when the damage is found.
    std::string damaged = withValue(before, "PitchShift", "floatvalue", "77");
    damaged.replace(damaged.find("length=\"12\""), 11, "length=\"13\"");
    std::string bank;
    for (int i = 0; i < 7; ++i)
        bank += damaged;
    for (const bool isProgram : {false, true}) {
        EXPECT_EQ(loadChunk(plugin.effect, isProgram ? damaged : bank, isProgram), 0);
        EXPECT_EQ(plugin.Program(), before);
    }
    boxes.boxes.clear();
    damaged.replace(damaged.find("version=\"1.0\""), 13, "version=\"2.0\"");
    EXPECT_EQ(plugin.LoadProgram(damaged), 1) << "of another version";
    EXPECT_EQ(plugin.Program(), before);
    ASSERT_EQ(boxes.boxes.size(), 1u);
    EXPECT_EQ(boxes.boxes[0].text, "Incorrect Preset version.");
    plugin.Ask(effSetProgram, 0, 0);
    EXPECT_NEAR(Shifts().first, 0.0f, 1e-6f) << "the other programs stay, too";
}

TEST_F(ZProgramBankTest, TheHostSeesValuesOutOfRangeAsTheNearerEnd)
{
    const std::string program = plugin.Program();
    for (const auto& [value, share] : {std::pair{"nan", 0.0f}, {"1e30", 1.0f}, {"-5", 0.0f}}) {
        const std::string changed = withValue(program, "pitchCorrectionTime", "floatvalue", value);
        EXPECT_EQ(plugin.LoadProgram(changed), 1);
        EXPECT_EQ(plugin.effect->getParameter(plugin.effect, 4), share);
    }
}

TEST(ZProgramBankWithoutPresetsTest, HasOneProgramWithTheNameThatTheHostSets)
{
    BoxRecorder boxes;
    const ZInterfaceLock lock;
    ZVSTPlugin plugin(nullptr, SmallPlugin::Make());
    AEffect* const effect = plugin.getAeffect();
    const auto name = [effect] {
        std::string room(kVstMaxProgNameLen + 1, '!');
        ask(effect, effGetProgramName, 0, 0, room.data());
        EXPECT_EQ(room.back(), '!');
        return std::string(room.c_str());
    };
    EXPECT_EQ(effect->numPrograms, 1);
    EXPECT_EQ(name(), "Init");
    plugin.setProgramName("Sharps: \u266F\u266F\u266F\u266F\u266F\u266F");
    EXPECT_EQ(name(), "Sharps: \u266F\u266F\u266F\u266F\u266F") << "cut at a whole character";
    const std::vector<char> unterminated(kVstMaxProgNameLen, 'x');
    plugin.setProgramName(unterminated.data());
    EXPECT_EQ(name(), std::string(kVstMaxProgNameLen - 1, 'x'));

    EXPECT_EQ(loadChunk(effect, "\n", false), 0) << "its only program has no content";
    ASSERT_EQ(boxes.boxes.size(), 1u);
    const std::string chunk = chunkOf(effect, false);
    EXPECT_EQ(programsOf(chunk).size(), 1u);
    EXPECT_EQ(loadChunk(effect, chunk, false), 1);
}

// SPDX-License-Identifier: GPL-3.0-or-later
// The document of the shipped description: what the user's choices, notes of MIDI, the editing of
// scales and presets do to the elements of the pitch bay.

#include "kestrune/common/pitch/KestruneDocument.h"

#include "kestrune/common/pitch/KestruneMessages.h"
#include "kestrune/common/pitch/KestruneNameScaleDialog.h"
#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "kestrune/common/views/ProductApplication.h"
#include "support/MessageWith.h"
#include "support/RealtimeGuard.h"
#include "support/Test.h"
#include "support/XmlOf.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"

#include <boost/smart_ptr/make_shared.hpp>

using namespace orvane;

namespace
{

using Degrees = std::vector<std::int32_t>;

constexpr std::int32_t kKeyC = 3;
constexpr std::int32_t kKeyOfFSharp = 9;

struct KestruneDocumentTest : testing::Test
{
    [[nodiscard]] ZElement& Element(const char* name) const { return *document->FindElement(name); }
    void Choose(const char* name, std::int32_t choice) const
    {
        Element(name).SetDiscrete(choice, false);
    }
    void Send(std::int32_t id) const { document->HandleZMessage(boost::make_shared<ZMessage>(id)); }
    [[nodiscard]] std::pair<float, float> Shifts() const
    {
        return {Element("PitchShift").GetZFloat(), Element("FormantShift").GetZFloat()};
    }
    void Listen(std::int32_t key) const
    {
        Choose("AcceptMIDI", 1);
        Choose("key", key);
        app->Tick();
    }
    static boost::shared_ptr<const ZMessage> Note(std::int32_t id, int note)
    {
        return messageWith(id, "Which", static_cast<std::uint8_t>(note));
    }
    void Play(int note) const { document->HandleZMessage(Note(ZMIDINOTEON, note)); }
    [[nodiscard]] Degrees Notes(const char* name = "notesInScale") const
    {
        return degreesOf({Element(name).GetZBuffer()->Data(), kDegrees});
    }
    void EditNotes(const Degrees& degrees) const
    {
        ZBuffer flags(kDegrees, "flags");
        flagDegrees({flags.Data(), kDegrees}, degrees);
        Element("notesInScale").SetZBuffer(flags, false);
        app->Tick();
    }

    /// The value as text.
    [[nodiscard]] std::string ValueOf(const std::string& name) const
    {
        const ZElement& element = Element(name.c_str());
        const bool isFloat = element.GetType() == ZElement::ZFLOAT;
        std::ostringstream text;
        isFloat ? text << element.GetZFloat() : text << element.GetDiscrete();
        return text.str();
    }
    void Dispatch(const std::string& name) const
    {
        boost::shared_ptr<ZCommand> command;
        ASSERT_TRUE(app->GetCommandList()->GetCommand(name, command)) << name;
        command->Dispatch();
    }
    [[nodiscard]] std::string Saved() const
    {
        ZXMLElement preset;
        document->SavePreset(preset);
        return std::string(preset.GetText());
    }
    void Load(const std::string& elements) const
    {
        document->LoadPreset(
            xmlOf("<file><preset version=\"1.0\">" + elements + "</preset></file>"));
        app->Tick();
    }
    /// The flags of the memories, A first.
    [[nodiscard]] std::string Flags() const
    {
        std::string flags;
        for (const char letter : {'A', 'B', 'C', 'D'})
            flags += ValueOf(std::string("Preset") + letter + "Active");
        return flags;
    }

    const std::unique_ptr<ZPlugin> app = startProduct();
    const boost::shared_ptr<KestruneDocument> document =
        boost::dynamic_pointer_cast<KestruneDocument>(app->GetCurrentDocument());
};

}  // namespace

TEST_F(KestruneDocumentTest, AChoiceShiftsThePitchAndTakesHalfOfItIntoTheFormants)
{
    using Cents = std::pair<float, float>;
    for (const auto& [pitch, formant, cents] : {std::tuple(0, 5, Cents(1200, 600)),
                                                {0, 0, {1200, 1100}},
                                                {24, 10, {-1200, -1100}},
                                                {12, 5, {0, 0}},
                                                {5, 6, {700, 250}}})
    {
        Choose("pitchTranspose", pitch);
        Choose("formantTranspose", formant);
        app->Tick();
        EXPECT_EQ(Shifts(), cents) << pitch << ", " << formant;
        EXPECT_FALSE(Element("PitchShift").IsMarkedChanged()) << "notified in the same tick";
    }
    Send(ZSETDEFAULTS);
    app->Tick();
    EXPECT_EQ(Element("pitchTranspose").GetDiscrete(), 12);
    EXPECT_EQ(Shifts(), std::pair(0.0f, 0.0f));
}

TEST_F(KestruneDocumentTest, ALoadWithAChoiceButNotItsShiftMovesTheShift)
{
    const std::string pitch = R"(<element name="pitchTranspose" int32value="0" />)";
    const std::string formant = R"(<element name="formantTranspose" int32value="6" />)";
    const std::string pitchShift = R"(<element name="PitchShift" floatvalue="50" />)";
    const std::string formantShift = R"(<element name="FormantShift" floatvalue="70" />)";
    const std::pair<std::string, std::pair<float, float>> rows[] = {
        {pitch, {1200.0f, 600.0f}},
        {pitch + formantShift, {1200.0f, 70.0f}},
        {formantShift + pitch + pitchShift, {50.0f, 70.0f}},
        {pitchShift + formant, {50.0f, -75.0f}},
        {pitchShift, {50.0f, 7.0f}}};
    for (const auto& [held, shifts] : rows) {
        Element("FormantShift").SetZFloat(7.0f, false);
        app->Tick();
        Load(held);
        EXPECT_EQ(Shifts(), shifts) << held;
    }
}

TEST_F(KestruneDocumentTest, ANoteSwitchesItsDegreeOfTheKeyInWhateverOctave)
{
    const Degrees major{0, 2, 4, 5, 7, 9, 11};
    Play(62);
    EXPECT_EQ(Notes(), major) << "the user does not listen";
    Listen(kKeyC);
    for (const int note : {62, 61, 60, 127, 74, 62})  // D, C#, C: the root, G, D twice
        Play(note);
    document->HandleZMessage(Note(ZMIDINOTEOFF, 64));
    app->Tick();
    EXPECT_EQ(Notes(), (Degrees{0, 1, 4, 5, 9, 11}));
    EXPECT_EQ(Notes("currentCustomScale"), Notes());
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 1);

    Listen(kKeyOfFSharp);
    for (const int note : {66, 65, 8})  // F#: the root, F, and G# of the lowest octave
        Play(note);
    const Degrees edited{0, 1, 2, 4, 5, 9};
    EXPECT_EQ(Notes(), edited);
    for (const std::int32_t noKey : {-1, 12, INT32_MAX, INT32_MIN}) {
        Element("key").SetDiscrete(noKey, true);
        Play(62);
    }
    EXPECT_EQ(Notes(), edited);
}

TEST_F(KestruneDocumentTest, NotesOfTheAudioThreadNeitherAllocateNorLockNorLoseAStep)
{
    Listen(kKeyC);
    const auto note = Note(ZMIDINOTEON, 61);
    std::atomic<bool> done = false;
    std::thread audio([&] {
        const RealtimeGuard guard;
        for (int i = 0; i < 20001; ++i)
            document->HandleZMessage(note);
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
        done = true;
    });
    while (!done)
        app->Tick();
    audio.join();
    app->Tick();
    EXPECT_EQ(Notes(), (Degrees{0, 1, 2, 4, 5, 7, 9, 11}));
    EXPECT_EQ(Notes("currentCustomScale"), Notes());
}

TEST_F(KestruneDocumentTest, EditedNotesBecomeAScaleOfTheUsersNameUnlessTheUserCancels)
{
    const Degrees edited{0, 3, 6};
    EditNotes(edited);
    Send(KESTRUNECUSTOMSCALEDONE);  // there is no display to ask on
    const ZElement& scale = Element("scale");
    EXPECT_EQ(scale.CountDiscreteValues(), 4);

    std::vector<std::string> offered;
    const std::optional<std::string> answers[] = {std::nullopt, "", std::string(300, 'x')};
    const auto before =
        KestruneNameScaleDialog::SetRunner([&](ZApplication*, const ZString&, ZString& name) {
            const auto& answer = answers[offered.size()];
            offered.push_back(name.ToNarrow());
            name = ZString(answer.value_or(""));
            return answer.has_value();
        });
    Send(KESTRUNECUSTOMSCALEDONE);
    app->Tick();
    EXPECT_EQ(scale.CountDiscreteValues(), 4) << "cancelled";
    Send(KESTRUNECUSTOMSCALEDONE);
    app->Tick();
    KestruneNameScaleDialog::SetRunner(before);
    EXPECT_EQ(offered, (std::vector<std::string>{"Major (copy)", "Major (copy)", ""}));
    EXPECT_TRUE(scale.CountDiscreteValues() == 5 && scale.GetDiscrete() == 4);
    EXPECT_EQ(scale.GetDiscreteString(4)->ToNarrow(), std::string(256, 'x')) << "cut as typed";
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 0);

    EditNotes({0, 1});
    Send(KESTRUNECUSTOMSCALECANCEL);
    app->Tick();
    EXPECT_EQ(Notes(), edited);
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 0);
}

// Saved projects refer to a factory preset by its number and rely on its sound, so these values
// must not change.
TEST_F(KestruneDocumentTest, FactoryPresetsKeepTheirOrderAndValues)
{
    const std::string names = "PitchShift FormantShift pitchCorrectionOnOff transposeOnOff key "
                              "intonation sourceType detune pitchCorrectionTime pitchReference "
                              "currentScaleIndex";
    constexpr std::pair<const char*, const char*> kPresets[] = {
        {"Default", "2.79397e-07 2.79397e-07 0 0 3 0 0 1.16415e-08 50 2 1 "},
        {"Adult to Child", "1200 800 0 1 9 6 3 -50 215 2 0 "},
        {"Bassline", "-1200 -700 0 1 3 0 1 0 50 2 1 "},
        {"Electric Alien", "-1200 1200 1 1 3 8 0 -1.68539 0 2 0 "},
        {"It Came From Below", "-200 -1200 1 1 9 6 0 -50 215 2 0 "},
        {"RnB Processed Vox", "50 0 1 1 3 0 0 -50 0 2 0 "},
        {"Woman to Man", "-500 -500 0 1 3 0 2 0 125 2 0 "},
    };
    ASSERT_EQ(document->GetPresetCount(), static_cast<std::int32_t>(std::size(kPresets)));
    for (std::int32_t i = 0; i < document->GetPresetCount(); ++i) {
        document->LoadFactoryPreset(i);
        std::string values;
        std::istringstream all(names);
        for (std::string name; all >> name;)
            values += ValueOf(name) + " ";
        EXPECT_STREQ(document->GetPresetName(i), kPresets[i].first);
        EXPECT_EQ(values, kPresets[i].second) << kPresets[i].first;
    }
    document->LoadFactoryPreset(7);
    EXPECT_EQ(ValueOf("detune"), "0") << "a preset that does not exist changes nothing";
}

TEST_F(KestruneDocumentTest, RecallingAMemoryRestoresItsStateAndSetsItsFlag)
{
    const std::string letters = "ABCD";
    Dispatch("cmdRecallPresetB");
    EXPECT_EQ(Flags(), "0000") << "an empty memory";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        Choose("key", static_cast<std::int32_t>(i));
        Dispatch(std::string("cmdSaveToPreset") + letters[i]);
    }
    EXPECT_EQ(Flags(), "0000") << "saving sets no flag";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        Dispatch(std::string("cmdRecallPreset") + letters[i]);
        EXPECT_EQ(ValueOf("key"), std::to_string(i));
        EXPECT_EQ(Flags(), std::string("0000").replace(i, 1, "1"));
    }
}

TEST_F(KestruneDocumentTest, TrackingIsSavedOnlyWhileItIsFineAndWhatWasSavedComesBack)
{
    const auto choose = [this](std::int32_t tracking) {
        Choose("tracking", tracking);
        app->Tick();
    };
    const std::string classic = Saved();
    choose(1);
    const std::string fine = Saved();
    EXPECT_EQ(classic.find("tracking"), std::string::npos);
    EXPECT_NE(fine.find("name=\"tracking\""), std::string::npos);

    Dispatch("cmdSaveToPresetA");
    choose(0);
    EXPECT_EQ(Saved(), classic);
    Dispatch("cmdSaveToPresetB");
    const std::pair<const char*, std::function<void()>> loads[] = {
        {"0", [&] { Load(""); }},
        {"1", [&] { Load(R"(<element name="tracking" int32value="1" />)"); }},
        {"0", [&] { Dispatch("cmdRecallPresetB"); }},
        {"1", [&] { Dispatch("cmdRecallPresetA"); }},
        {"0", [&] { document->LoadFactoryPreset(1); }},
        {"0", [&] { Dispatch("cmdSetDefaults"); }}};
    for (const auto& [expected, bringsBack] : loads)
        for (const std::int32_t before : {0, 1}) {
            choose(before);
            bringsBack();
            EXPECT_EQ(ValueOf("tracking"), expected) << &bringsBack - &loads[0].second;
        }
    EXPECT_EQ(app->GetExposedCount(), 7) << "the tracking is no parameter of the host";
}

TEST_F(KestruneDocumentTest, SavingAppliesPendingChangesFirst)
{
    Choose("pitchTranspose", 0);
    const std::string text = Saved();
    EXPECT_EQ(text.find("AcceptMIDI"), std::string::npos);
    EXPECT_NE(text.find("name=\"FormantShift\" class=\"ZElementClass\" type=\"ZFLOAT\" "
                        "floatvalue=\"600\""),
              std::string::npos);
}

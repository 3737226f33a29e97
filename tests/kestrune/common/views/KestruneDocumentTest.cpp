// SPDX-License-Identifier: GPL-3.0-or-later
// The document of the shipped description: what the user's choices, notes of MIDI and the editing
// of scales do to the elements of the pitch bay.

#include "kestrune/common/pitch/KestruneDocument.h"

#include "kestrune/common/pitch/KestruneMessages.h"
#include "kestrune/common/pitch/KestruneNameScaleDialog.h"
#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "kestrune/common/views/ProductApplication.h"
#include "support/RealtimeGuard.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLDocument.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Degrees = std::vector<std::int32_t>;

constexpr std::int32_t kKeyOfC = 3;
constexpr std::int32_t kKeyOfFSharp = 9;

class KestruneDocumentTest : public testing::Test
{
protected:
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
        const auto message = boost::make_shared<ZMessage>(id);
        message->Add<std::uint8_t>("Which", static_cast<std::uint8_t>(note));
        return message;
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

    const std::unique_ptr<ZPlugin> app = startProduct();
    const boost::shared_ptr<KestruneDocument> document =
        boost::dynamic_pointer_cast<KestruneDocument>(app->GetCurrentDocument());
};

}  // namespace

TEST_F(KestruneDocumentTest, AChoiceShiftsThePitchAndTakesHalfOfItIntoTheFormants)
{
    struct Row
    {
        std::int32_t pitch;
        std::int32_t formant;
        std::pair<float, float> cents;
    };
    for (const Row& row :
         {Row{0, 5, {1200.0f, 600.0f}}, Row{0, 0, {1200.0f, 1100.0f}},
          Row{24, 10, {-1200.0f, -1100.0f}}, Row{12, 5, {0.0f, 0.0f}}, Row{5, 6, {700.0f, 250.0f}}})
    {
        Choose("pitchTranspose", row.pitch);
        Choose("formantTranspose", row.formant);
        app->Tick();
        EXPECT_EQ(Shifts(), row.cents) << row.pitch << ", " << row.formant;
        EXPECT_FALSE(Element("PitchShift").IsMarkedChanged()) << "not told in the same tick";
    }
    Send(ZSETDEFAULTS);
    app->Tick();
    EXPECT_EQ(Element("pitchTranspose").GetDiscrete(), 12);
    EXPECT_EQ(Element("formantTranspose").GetDiscrete(), 5);
    EXPECT_EQ(Shifts(), std::pair(0.0f, 0.0f));
}

TEST_F(KestruneDocumentTest, ALoadWithAChoiceButNotItsShiftMovesTheShift)
{
    const std::string pitch = R"(<element name="pitchTranspose" int32value="0"></element>)";
    const std::string formant = R"(<element name="formantTranspose" int32value="6"></element>)";
    const std::string pitchShift = R"(<element name="PitchShift" floatvalue="50"></element>)";
    const std::string formantShift = R"(<element name="FormantShift" floatvalue="70"></element>)";
    const struct
    {
        std::string held;
        std::pair<float, float> shifts;
    } rows[] = {{pitch, {1200.0f, 600.0f}},
                {pitch + formantShift, {1200.0f, 70.0f}},
                {formantShift + pitch + pitchShift, {50.0f, 70.0f}},
                {pitchShift + formant, {50.0f, -75.0f}},
                {pitchShift, {50.0f, 7.0f}}};
    for (const auto& row : rows) {
        Send(ZSETDEFAULTS);
        app->Tick();
        Element("FormantShift").SetZFloat(7.0f, false);
        app->Tick();
        const std::string text = "<file><preset version=\"1.0\">" + row.held + "</preset></file>";
        document->LoadPreset(
            ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0));
        app->Tick();
        EXPECT_EQ(Shifts(), row.shifts) << row.held;
    }
}

TEST_F(KestruneDocumentTest, ANoteSwitchesItsDegreeOfTheKeyInWhateverOctave)
{
    const Degrees major{0, 2, 4, 5, 7, 9, 11};
    Play(62);
    EXPECT_EQ(Notes(), major) << "the user does not listen";
    Listen(kKeyOfC);
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
    Listen(kKeyOfC);
    const auto note = Note(ZMIDINOTEON, 61);
    std::atomic<bool> done = false;
    std::thread audio([&] {
        for (int i = 0; i < 20001; ++i) {
            const RealtimeGuard guard;
            document->HandleZMessage(note);
            ASSERT_EQ(guard.violations(), 0u) << guard.firstViolation();
        }
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
    std::vector<std::optional<std::string>> answers{std::nullopt, "", std::string(300, 'x')};
    const auto before = KestruneNameScaleDialog::SetRunner(
        [&](ZApplication*, const ZString& resource, ZString& name) {
            EXPECT_EQ(resource.ToNarrow(), "SaveCustomScale");
            const auto& answer = answers.at(offered.size());
            offered.push_back(name.ToNarrow());
            name = ZString(answer.value_or(""));
            return answer.has_value();
        });
    Send(KESTRUNECUSTOMSCALEDONE);
    app->Tick();
    EXPECT_EQ(scale.CountDiscreteValues(), 4) << "cancelled";
    EXPECT_EQ(Notes(), edited);
    Send(KESTRUNECUSTOMSCALEDONE);
    app->Tick();
    KestruneNameScaleDialog::SetRunner(before);
    EXPECT_EQ(offered, (std::vector<std::string>{"Major (copy)", "Major (copy)", ""}));
    EXPECT_EQ(scale.CountDiscreteValues(), 5);
    EXPECT_EQ(scale.GetDiscrete(), 4);
    EXPECT_EQ(scale.GetDiscreteString(4)->ToNarrow(), std::string(256, 'x'))
        << "cut where the dialog's field ends";
    EXPECT_EQ(Notes(), edited);
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 0);

    EditNotes({0, 1});
    Send(KESTRUNECUSTOMSCALECANCEL);
    app->Tick();
    EXPECT_EQ(Notes(), edited);
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 0);
}

}  // namespace orvane

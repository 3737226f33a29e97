#include "kestrune/common/KestruneElements.h"

#include "support/SmallApplication.h"
#include "zlib/common/ZBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The label of that kind, "-" for none.
std::string labelOf(const ZElement& element, std::int32_t kind)
{
    const std::string label = element.GetLabel(kind).ToNarrow();
    return label == element.GetName() ? "-" : label;
}

std::string contentOf(ZElement& element)
{
    if (element.GetType() == ZElement::ZFLOAT)
        return std::to_string(static_cast<int>(element.Min())) + ".." +
               std::to_string(static_cast<int>(element.Max()));
    if (element.GetType() == ZElement::ZBUFFER)
        return std::to_string(element.GetZBuffer()->Length()) + " samples from " +
               std::to_string(static_cast<int>(element.ZBufferMin()));
    std::string choices = std::to_string(element.CountDiscreteValues());
    if (element.CountDiscreteValues() > 0)
        choices += " from " + element.GetDiscreteString(0)->ToNarrow();
    return choices;
}

std::string defaultOf(const ZElement& element)
{
    if (element.GetType() == ZElement::ZFLOAT)
        return std::to_string(static_cast<int>(element.GetZFloatDefault()));
    if (element.GetType() == ZElement::ZDISCRETE)
        return std::to_string(element.GetDiscreteDefault());
    return "-";
}

std::string describe(ZElement& element)
{
    const std::string flags = std::string(element.IsArchivable() ? " saved" : "") +
                              (element.IsExposed() ? " host" : "") +
                              (element.GetObserverCount() > 0 ? " observed" : "");
    return element.GetName() + " | " + labelOf(element, 0) + ", " + labelOf(element, 1) + ", " +
           labelOf(element, 2) + " | " + contentOf(element) + " | " + defaultOf(element) + " |" +
           flags;
}

}  // namespace

TEST(KestruneElementsTest, AreWhatPresetsHostsAndViewsExpect)
{
    const std::vector<std::string> expected{
        "PitchShift | Pitch Shift, -, PiSh | -1200..1200 | 0 | saved observed",
        "FormantShift | Formant Shift, -, FiSh | -1200..1200 | 0 | saved observed",
        "pitchCorrectionOnOff | Correct Pitch, CorrPitch, CrPi | 2 from Bypass | 0 |"
        " saved host observed",
        "currentScaleModified | -, -, - | 2 from No | 0 | saved",
        "transposeOnOff | Transpose, -, Tran | 2 from Bypass | 0 | saved host observed",
        "key | Key, -, - | 12 from A | 3 | saved host observed",
        "scale | -, -, - | 4 from Chromatic | 1 | observed",
        "BuiltInScaleNames | Scale, -, Scal | 4 from Chromatic | 0 | observed",
        "CustomScaleNames | -, -, - | 0 | 0 | saved observed",
        "intonation | Tuning, -, Tune | 10 from Equal | 0 | saved observed",
        "sourceType | Pitch Range, PitchRan, PiRa | 5 from Normal (D2 - E6) | 0 |"
        " saved host observed",
        "detune | Detune, -, Detn | -50..50 | 0 | saved observed",
        "pitchCorrectionTime | Pitch Correcton Time, PitCorrTime, CrTm | 0..400 | 50 |"
        " saved host observed",
        "pitchReference | Reference Source, RefSource, RfSc | 3 from Left | 2 | saved observed",
        "correctionMeter | -, -, - | -200..200 | 0 | observed",
        "inputPitch | -, -, - | 100..500 | 100 | observed",
        "outputPitch | -, -, - | 100..500 | 100 | observed",
        "ignoredNotes | -, -, - | 12 samples from 0 | - | saved observed",
        "notesInScale | -, -, - | 12 samples from -1 | - | observed",
        "currentCustomScale | -, -, - | 12 samples from -1 | - | saved observed",
        "customScaleTones | -, -, - | 192 samples from 0 | - | saved observed",
        "currentScaleIndex | -, -, - | -1..1 | 1 | saved observed",
    };
    SmallApplication application;
    KestruneElements elements(&application);
    elements.SetDefaults();
    ZHandler bay("bay", &application);
    elements.AddObserver(&bay);
    std::vector<std::string> found;
    for (const auto& element : elements.GetList())
        found.push_back(describe(*element));
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(elements[KestruneElements::kCustomNames].ArchivesDiscreteList());
    EXPECT_EQ(elements[KestruneElements::kPitchCorrectionTime].GetUnits(), ZElement::kMilliseconds);
    elements.RemoveObserver(&bay);
    for (const auto& element : elements.GetList())
        EXPECT_EQ(element->GetObserverCount(), 0);
}

TEST(KestruneElementsTest, NewOnesHaveNothingToTell)
{
    const KestruneElements elements(nullptr);
    for (const auto& element : elements.GetList())
        EXPECT_FALSE(element->IsMarkedChanged()) << element->GetName();
}

TEST(KestruneElementsTest, DefaultsAreToldAndLeaveScalesOfTheUser)
{
    KestruneElements elements(nullptr);
    elements[KestruneElements::kIgnoredNotes].GetZBuffer()->Data()[3] = 1.0f;
    elements[KestruneElements::kCustomScaleTones].GetZBuffer()->Data()[3] = 1.0f;
    elements[KestruneElements::kKey].SetDiscrete(7, true);
    elements.SetDefaults();
    EXPECT_EQ(elements[KestruneElements::kKey].GetDiscrete(), 3);
    EXPECT_EQ(elements.CopySamples(KestruneElements::kIgnoredNotes), std::vector<float>(12));
    EXPECT_EQ(elements.CopySamples(KestruneElements::kCustomScaleTones)[3], 1.0f);
    EXPECT_TRUE(elements[KestruneElements::kIgnoredNotes].IsMarkedChanged());
    EXPECT_TRUE(elements[KestruneElements::kScale].IsMarkedChanged());
    EXPECT_FALSE(elements[KestruneElements::kNotesInScale].IsMarkedChanged());
}

TEST(KestruneElementsTest, EngineIsSparedWhatWouldBreakIt)
{
    KestruneElements elements(nullptr);
    elements.SetDefaults();
    ZElement& shift = elements[KestruneElements::kPitchShift];
    for (const auto& [stored, octaves] : std::vector<std::pair<float, float>>{
             {600.0f, 0.5f}, {5000.0f, 1.0f}, {-kInfinity, -1.0f}, {kNaN, 0.0f}})
    {
        shift.SetZFloat(stored, false);
        EXPECT_EQ(elements.ReadSettings().pitchShiftOctaves, octaves) << stored;
    }
    EXPECT_NE(shift.GetZFloat(), shift.GetZFloat()) << "the element keeps what was stored";

    ZElement& time = elements[KestruneElements::kPitchCorrectionTime];
    time.SetZFloat(-5.0f, false);
    EXPECT_EQ(elements.ReadSettings().correctionTimeMs, 0.0f);
    time.SetZFloat(kNaN, false);
    EXPECT_EQ(elements.ReadSettings().correctionTimeMs, 50.0f);

    ZElement& reference = elements[KestruneElements::kPitchReference];
    for (const std::int32_t both : {-1, 2, 65536, 65537}) {
        reference.SetDiscrete(both, false);
        EXPECT_EQ(elements.ReadSettings().pitchReference, 2);
    }
    ZElement& archivedScale = elements[KestruneElements::kCurrentScaleIndex];
    archivedScale.SetZFloat(kNaN, false);
    EXPECT_EQ(elements.ArchivedScale(), 0);
    archivedScale.SetZFloat(1e30f, false);
    EXPECT_EQ(elements.ArchivedScale(), 1000000);
}

TEST(KestruneElementsTest, ReferenceFollowsKeyAndDetuneAndStaysFinite)
{
    KestruneElements elements(nullptr);
    elements.SetDefaults();
    EXPECT_NEAR(elements.ReadSettings().referenceHz, 523.25f, 0.01f);
    ZElement& key = elements[KestruneElements::kKey];
    ZElement& detune = elements[KestruneElements::kDetune];
    key.SetDiscrete(0, false);
    detune.SetZFloat(50.0f, false);
    EXPECT_NEAR(elements.ReadSettings().referenceHz, 452.893f, 0.001f);
    detune.SetZFloat(kNaN, false);
    for (const std::int32_t a : {0, 12, -12, 120}) {
        key.SetDiscrete(a, false);
        EXPECT_EQ(elements.ReadSettings().referenceHz, 440.0f) << a;
    }
    key.SetDiscrete(std::numeric_limits<std::int32_t>::min(), false);
    detune.SetZFloat(kInfinity, false);
    EXPECT_LT(elements.ReadSettings().referenceHz, 2000.0f);
}

TEST(KestruneElementsTest, DisplaysThatRestAreNotToldAgain)
{
    KestruneElements elements(nullptr);
    elements.ShowMeasured(12.0f, 700.0f, 704.0f);
    EXPECT_EQ(elements[KestruneElements::kInputPitch].GetZFloat(), 700.0f) << "above its range";
    elements.ShowNothing();
    EXPECT_EQ(elements[KestruneElements::kCorrectionMeter].GetZFloat(), 0.0f);
    for (const auto& element : elements.GetList())
        element->ClearMarkedChanged();
    elements.ShowNothing();
    EXPECT_FALSE(elements[KestruneElements::kInputPitch].IsMarkedChanged());
}

}  // namespace orvane

// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneElements.h"

#include "support/Test.h"
#include "zlib/common/buffers/ZBuffer.h"

using namespace orvane;

namespace
{

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct KestruneElementsTest : testing::Test
{
    using E = KestruneElements;

    KestruneElementsTest() { elements.SetDefaults(); }
    KestruneElements elements{nullptr};
};

}  // namespace

TEST_F(KestruneElementsTest, DefaultsAreNotifiedAndLeaveScalesOfTheUser)
{
    const KestruneElements fresh(nullptr);
    for (const auto& element : fresh.GetList())
        EXPECT_FALSE(element->IsMarkedChanged()) << "new: " << element->GetName();
    for (const auto flags : {E::kIgnoredNotes, E::kCustomScaleTones})
        elements[flags].GetZBuffer()->Data()[3] = 1.0f;
    elements[KestruneElements::kKey].SetDiscrete(7, true);
    elements.SetDefaults();
    EXPECT_EQ(elements[KestruneElements::kKey].GetDiscrete(), 3);
    EXPECT_EQ(elements.CopySamples(KestruneElements::kIgnoredNotes), std::vector<float>(12));
    EXPECT_EQ(elements.CopySamples(KestruneElements::kCustomScaleTones)[3], 1.0f);
    EXPECT_TRUE(elements[KestruneElements::kIgnoredNotes].IsMarkedChanged());
    EXPECT_TRUE(elements[KestruneElements::kScale].IsMarkedChanged());
    EXPECT_FALSE(elements[KestruneElements::kNotesInScale].IsMarkedChanged());
}

TEST_F(KestruneElementsTest, TheEngineGetsNoValueThatWouldBreakIt)
{
    ZElement& shift = elements[KestruneElements::kPitchShift];
    for (const auto& [stored, octaves] :
         {std::pair{600.0f, 0.5f}, {5000.0f, 1.0f}, {-kInfinity, -1.0f}, {kNaN, 0.0f}})
    {
        shift.SetZFloat(stored, false);
        EXPECT_EQ(elements.ReadSettings().pitchShiftOctaves, octaves) << stored;
    }
    for (const auto& [stored, milliseconds] : {std::pair{-5.0f, 0.0f}, {kNaN, 50.0f}}) {
        elements[KestruneElements::kPitchCorrectionTime].SetZFloat(stored, false);
        EXPECT_EQ(elements.ReadSettings().correctionTimeMs, milliseconds);
    }
    for (const std::int32_t both : {-1, 2, 65536, 65537}) {
        elements[KestruneElements::kPitchReference].SetDiscrete(both, false);
        EXPECT_EQ(elements.ReadSettings().pitchReference, 2);
    }
    for (const auto& [stored, scale] : {std::pair{kNaN, 0}, {1e30f, 1000000}}) {
        elements[KestruneElements::kCurrentScaleIndex].SetZFloat(stored, false);
        EXPECT_EQ(elements.ArchivedScale(), scale);
    }
}

TEST_F(KestruneElementsTest, ReferenceFollowsKeyAndDetuneAndStaysFinite)
{
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

TEST_F(KestruneElementsTest, DisplaysAreNotifiedOfChangesOnly)
{
    elements.ShowMeasured(12.0f, 700.0f, 704.0f);
    EXPECT_EQ(elements[KestruneElements::kInputPitch].GetZFloat(), 700.0f) << "above its range";
    elements.ClearDisplays();
    EXPECT_EQ(elements[KestruneElements::kCorrectionMeter].GetZFloat(), 0.0f);
    elements[KestruneElements::kInputPitch].ClearMarkedChanged();
    elements.ClearDisplays();
    EXPECT_FALSE(elements[KestruneElements::kInputPitch].IsMarkedChanged());
}

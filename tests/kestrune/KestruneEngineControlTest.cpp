#include "kestrune/common/KestruneEngineControl.h"

#include "kestrune/common/PsolaClass.h"
#include "zlib/common/ZBuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace orvane
{

namespace
{

/// Notes what an engine is told.
class ToldEngine : public PsolaClass
{
public:
    void SetPitchShift(float) noexcept override { told += "pitch "; }
    void SetFormantShift(float) noexcept override { told += "formant "; }
    void SetReferenceFrequency(float) noexcept override { told += "reference "; }
    void SetScaleTones(const float*, int) noexcept override { told += "tones "; }
    void SetIgnoredNotes(ZBuffer*) noexcept override { told += "ignored "; }
    void SetCorrectionTime(float) noexcept override { told += "time "; }
    void SetFrequencyRange(float, float) noexcept override { told += "range "; }
    void SetCorrectionEnabled(bool on) noexcept override { told += on ? "correct " : "leave "; }
    void SetPitchReference(std::int16_t) noexcept override { told += "source "; }
    void SetTransposeEnabled(bool) noexcept override { told += "transpose "; }

    std::string TakeTold() { return std::exchange(told, {}); }

    std::string told;
};

/// Tells an engine the settings and gives what it was told.
std::string tell(KestruneEngineControl& control, ToldEngine& engine,
                 const KestruneEngineSettings& settings)
{
    control.Post(settings);
    control.ApplyNews(engine);
    return engine.TakeTold();
}

}  // namespace

TEST(KestruneEngineControlTest, ANewEngineIsToldEverythingAndLaterOnlyWhatIsNew)
{
    KestruneEngineControl control;
    ToldEngine engine;
    KestruneEngineSettings settings;
    settings.correctionOn = true;
    control.Post(settings);
    control.ApplyAll(engine);
    EXPECT_EQ(engine.TakeTold(),
              "pitch formant time reference tones ignored range source transpose correct ");
    EXPECT_TRUE(control.InForce().IsWet());
    EXPECT_EQ(tell(control, engine, settings), "");

    settings.pitchShiftOctaves = 0.5f;
    EXPECT_EQ(tell(control, engine, settings), "pitch ");
    settings.range.highHz = 494.0f;
    EXPECT_EQ(tell(control, engine, settings), "range ");
    settings.tones = tonesOf(1, 0);
    EXPECT_EQ(tell(control, engine, settings), "tones ");
    ZBuffer flags(kDegrees, "ZBuffer");
    settings.ignoredNotes = &flags;
    settings.pitchReference = 0;
    EXPECT_EQ(tell(control, engine, settings), "ignored source ");
    // Each switch is told, also one to the state that was.
    ++settings.correctionSwitches;
    EXPECT_EQ(tell(control, engine, settings), "correct ");
    control.ApplyNews(engine);
    EXPECT_EQ(engine.TakeTold(), "");
}

TEST(KestruneEngineControlTest, BlocksTakeTheNewestOnly)
{
    KestruneEngineControl control;
    ToldEngine engine;
    KestruneEngineSettings settings;
    for (const float time : {10.0f, 20.0f, 30.0f}) {
        settings.correctionTimeMs = time;
        control.Post(settings);
    }
    control.ApplyNews(engine);
    EXPECT_EQ(engine.TakeTold(), "time ");
    EXPECT_EQ(control.InForce().correctionTimeMs, 30.0f);
}

}  // namespace orvane

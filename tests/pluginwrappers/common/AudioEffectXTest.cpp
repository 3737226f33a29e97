// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/AudioEffectX.h"

#include "pluginwrappers/common/PluginEntry.h"
#include "support/BoxRecorder.h"
#include "support/PrivateFolder.h"
#include "support/Test.h"
#include "support/TestHost.h"
#include "zlib/common/objects/ZException.h"

#include <new>

using namespace orvane;

namespace
{

/// The calls of the operations below, in order.
std::vector<std::string> gEvents;

struct RecordingEditor : AEffEditor
{
    using AEffEditor::AEffEditor;
    ~RecordingEditor() override { gEvents.emplace_back("editor deleted"); }

    bool onKeyDown(VstKeyCode& key) override
    {
        gEvents.push_back(std::to_string(key.character) + " " + std::to_string(key.virt) + " " +
                          std::to_string(key.modifier));
        return true;
    }
};

/// Records a rate and a size, and calls failure in its other operations.
struct FailingEffect : AudioEffectX
{
    FailingEffect()
        : AudioEffectX(/*host*/ nullptr, /*programs*/ 3, /*parameters*/ 2)
    {
        setEditor(std::make_unique<RecordingEditor>(this));
    }
    ~FailingEffect() override { gEvents.emplace_back("effect deleted"); }

    void suspend() override { failure(); }
    void processReplacing(float**, float**, std::int32_t) override { failure(); }
    void process(float**, float**, std::int32_t) override { failure(); }
    float getParameter(std::int32_t /*index*/) override { return failure(), 1.0f; }
    void setSampleRate(float /*rate*/) override { gEvents.emplace_back("rate"); }
    void setBlockSize(std::int32_t frames) override
    {
        gEvents.push_back("size " + std::to_string(frames));
    }

    void (*failure)() = nullptr;
};

}  // namespace

TEST(AudioEffectXTest, ArgumentsAreConvertedForTheOperationsOrReplacedWhenTheyDoNotFit)
{
    gEvents.clear();
    AEffect* const record = (new FailingEffect)->getAeffect();
    EXPECT_EQ(ask(record, effSetBlockSizeAndSampleRate, 0, 256, nullptr, 96000.0f), 1);
    ask(record, effSetBlockSize, 0, 0x100000100);  // 256 when it is cut to 32 bits
    for (const auto& [key, modifiers] :
         {std::pair{11, 3.0f}, {256 + 11, 1e30f}, {-1, std::nanf("")}})
        EXPECT_EQ(ask(record, effEditKeyDown, 'a', key, nullptr, modifiers), 1);
    EXPECT_EQ(ask(record, effClose), 0);
    EXPECT_EQ(gEvents, (std::vector<std::string>{"rate", "size 256", "size -1", "97 11 3", "97 0 0",
                                                 "97 0 0", "effect deleted", "editor deleted"}));
}

TEST(AudioEffectXTest, ExceptionsAreReportedAndNeverReachTheHost)
{
    BoxRecorder recorder;
    auto* const effect = new FailingEffect;
    AEffect* const record = effect->getAeffect();
    effect->failure = [] { throw ZException("NULL preset file"); };
    EXPECT_EQ(ask(record, effMainsChanged), 0);
    effect->failure = [] { throw std::bad_alloc(); };
    record->processReplacing(record, nullptr, nullptr, 1);
    effect->failure = [] { throw std::runtime_error("torn"); };
    record->process(record, nullptr, nullptr, 1);
    effect->failure = [] { throw 7; };
    EXPECT_EQ(record->getParameter(record, 0), 0.0f);
    ask(record, effClose);
    ASSERT_EQ(recorder.boxes.size(), 4u);
    EXPECT_TRUE(recorder.boxes[0].text.starts_with("NULL preset file\n\rCode -1."));
    EXPECT_TRUE(recorder.boxes[2].text.starts_with("torn\n\rCode -1."));
}

TEST(PluginEntryTest, AFailureWhileAHostLoadsThePluginIsALineOnStandardError)
{
    const EnvironmentVariable display("DISPLAY", nullptr);
    const EnvironmentVariable wayland("WAYLAND_DISPLAY", nullptr);
    for (const auto& [code, line] :
         {std::pair{ZException::kGeneral,
                    "Cantorel Mini could not be loaded: no description (code -1)\n"},
          {ZException::kEndWithoutReport, ""}})
    {
        const TestHost host;
        TestHost::On(audioMasterVersion,
                     [code = code](AEffect*) { throw ZException(code, "no\ndescription"); });
        testing::internal::CaptureStderr();
        EXPECT_EQ(openPlugin(TestHost::callback), nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
}

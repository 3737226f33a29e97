#include "pluginwrappers/common/AudioEffectX.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "zlib/common/ZException.h"

#include "support/BoxRecorder.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

// What the host and the objects under test did, in order.
std::vector<std::string> gEvents;

class NotingEditor : public AEffEditor
{
public:
    using AEffEditor::AEffEditor;
    ~NotingEditor() override { gEvents.emplace_back("editor deleted"); }

    void idle() override { gEvents.emplace_back("idle"); }
    bool onKeyDown(VstKeyCode& key) override
    {
        gEvents.push_back(std::to_string(key.character) + " " + std::to_string(key.virt) + " " +
                          std::to_string(key.modifier));
        return true;
    }
};

class NotingEffect : public AudioEffectX
{
public:
    explicit NotingEffect(audioMasterCallback host)
        : AudioEffectX(host, /*programs*/ 3, /*parameters*/ 2)
    {
    }
    ~NotingEffect() override { gEvents.emplace_back("effect deleted"); }

    void processReplacing(float** /*inputs*/, float** /*outputs*/, std::int32_t /*frames*/) override
    {
        failure();
    }
    void process(float** /*inputs*/, float** /*outputs*/, std::int32_t /*frames*/) override
    {
        failure();
    }
    float getParameter(std::int32_t /*index*/) override
    {
        failure();
        return 1.0f;
    }
    void suspend() override { failure(); }
    void setSampleRate(float /*rate*/) override { gEvents.emplace_back("rate"); }
    void setBlockSize(std::int32_t frames) override
    {
        gEvents.push_back("size " + std::to_string(frames));
    }

    void AddEditor() { setEditor(std::make_unique<NotingEditor>(this)); }
    void CallEveryService()
    {
        setParameterAutomated(1, 0.5f);
        wantEvents();
        ioChanged();
        beginEdit(1);
        endEdit(1);
    }

    void (*failure)() = nullptr;
};

std::intptr_t noteCall(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index,
                       std::intptr_t value, void* /*ptr*/, float opt)
{
    gEvents.push_back(std::to_string(opcode) + " " + std::to_string(index) + " " +
                      std::to_string(value) + " " + std::to_string(opt));
    return 0;
}

class AudioEffectXTest : public testing::Test
{
protected:
    AudioEffectXTest() { gEvents.clear(); }
    ~AudioEffectXTest() override { record->dispatcher(record, effClose, 0, 0, nullptr, 0.0f); }

    std::intptr_t Ask(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                      void* ptr = nullptr, float opt = 0.0f) const
    {
        return record->dispatcher(record, opcode, index, value, ptr, opt);
    }

    NotingEffect* effect = new NotingEffect(noteCall);  // deleted by effClose
    AEffect* record = effect->getAeffect();
};

}  // namespace

TEST_F(AudioEffectXTest, AnEditorIsAnnouncedAndItsKeysAreMadeOfIndexValueAndOpt)
{
    EXPECT_EQ(record->flags & effFlagsHasEditor, 0);
    effect->AddEditor();
    EXPECT_EQ(record->flags, effFlagsHasEditor);
    EXPECT_EQ(Ask(effEditGetRect), 0);
    EXPECT_EQ(Ask(effEditIdle), 0);
    EXPECT_EQ(Ask(effEditKeyDown, 'a', 11, nullptr, 3.0f), 1);
    EXPECT_EQ(Ask(effEditKeyDown, 'a', 256 + 11, nullptr, 1e30f), 1);
    EXPECT_EQ(Ask(effEditKeyDown, 'a', -1, nullptr, std::numeric_limits<float>::quiet_NaN()), 1);
    EXPECT_EQ(Ask(effEditKeyUp, 'a'), 0);
    EXPECT_EQ(Ask(effSetEditKnobMode, 0, 1), 0);
    EXPECT_EQ(gEvents, (std::vector<std::string>{"idle", "97 11 3", "97 0 0", "97 0 0"}));
}

TEST_F(AudioEffectXTest, WhateverIsThrownIsReportedAndNeverReachesTheHost)
{
    BoxRecorder recorder;
    effect->failure = [] { throw ZException(-1, "NULL preset file"); };
    EXPECT_EQ(Ask(effMainsChanged), 0);
    effect->failure = [] { throw std::bad_alloc(); };
    record->processReplacing(record, nullptr, nullptr, 1);
    effect->failure = [] { throw std::runtime_error("torn"); };
    record->process(record, nullptr, nullptr, 1);
    effect->failure = [] { throw 7; };
    EXPECT_EQ(record->getParameter(record, 0), 0.0f);
    ASSERT_EQ(recorder.boxes.size(), 4u);
    EXPECT_TRUE(recorder.boxes[0].text.starts_with("NULL preset file\n\rCode -1."));
    EXPECT_TRUE(recorder.boxes[2].text.starts_with("torn\n\rCode -1."));
}

TEST_F(AudioEffectXTest, ServicesAreAskedByTheirNumbersAndRateComesBeforeSize)
{
    effect->CallEveryService();
    EXPECT_EQ(Ask(effSetBlockSizeAndSampleRate, 0, 256, nullptr, 96000.0f), 1);
    Ask(effSetBlockSize, 0, 0x100000100);  // its low half alone would be a size
    EXPECT_EQ(gEvents, (std::vector<std::string>{
                           "0 1 0 0.500000", "6 0 1 0.000000", "13 0 0 0.000000", "43 1 0 0.000000",
                           "44 1 0 0.000000", "rate", "size 256", "size -1"}));
}

TEST(AudioEffectXCloseTest, DeletesTheEffectAfterTheDispatcherReturned)
{
    gEvents.clear();
    auto* const effect = new NotingEffect(nullptr);
    effect->AddEditor();
    effect->CallEveryService();  // no host: no call
    AEffect* const record = effect->getAeffect();
    EXPECT_EQ(record->dispatcher(record, effClose, 0, 0, nullptr, 0.0f), 0);
    EXPECT_EQ(gEvents, (std::vector<std::string>{"effect deleted", "editor deleted"}));
}

}  // namespace orvane

#include "zlib/common/ZElement.h"

#include "support/RealtimeGuard.h"
#include "support/SmallApplication.h"
#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>

#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

boost::shared_ptr<ZElement> element(const char* name, ZElement::Type type,
                                    std::uint32_t bufferLength = 0)
{
    return boost::make_shared<ZElement>(name, type, nullptr, bufferLength);
}

/// Remembers the ids of all messages about an element.
class Observer : public ZHandler
{
public:
    explicit Observer(ZLooper* looper)
        : ZHandler("observer", looper)
    {
    }
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        heard.push_back(message->GetId());
        ASSERT_TRUE(message->Find<std::uint64_t>("elementid", elementId));
        if (onMessage)
            onMessage();
    }

    std::vector<std::int32_t> heard;
    std::uint64_t elementId = 0;
    std::function<void()> onMessage;
};

using Ids = std::vector<std::int32_t>;

/// What the observer hears when the application's queue runs.
Ids heardBy(Observer& observer, SmallApplication& application)
{
    observer.heard.clear();
    application.ProcessQueue();
    return observer.heard;
}

std::string failure(const std::function<void()>& call)
{
    try {
        call();
    } catch (const ZException& exception) {
        EXPECT_EQ(exception.GetCode(), -1);
        return exception.GetMessage().ToNarrow();
    }
    return "none";
}

}  // namespace

TEST(ZElementTest, OperationsOfAnotherTypeSayWhatWasCalledOnWhat)
{
    ZElement group("group", ZElement::ZGROUP, nullptr);
    const ZBuffer buffer(4, "ZBuffer");
    const std::vector<std::pair<std::function<void()>, const char*>> calls{
        {[&] { static_cast<void>(group.CountDiscreteValues()); },
         "CountDiscreteValues() called on a non discrete element."},
        {[&] { static_cast<void>(group.GetDiscreteString(0)); },
         "GetDiscreteString() called on a non discrete element."},
        {[&] { group.RemoveDiscreteValues(true); },
         "RemoveDiscreteValues() called on a non discrete element."},
        {[&] { group.AddDiscreteValue("x"); },
         "AddDiscreteValue() called on a non discrete element."},
        {[&] { group.SetDiscrete(0, true); }, "SetDiscrete() called on a non discrete element."},
        {[&] { static_cast<void>(group.GetDiscrete()); },
         "GetDiscrete() called on a non discrete element."},
        {[&] { group.SetDiscreteDefault(0); },
         "SetDiscreteDefault() called on a non discrete element."},
        {[&] { static_cast<void>(group.GetDiscreteDefault()); },
         "GetDiscrete() called on a non discrete element."},
        {[&] { group.SetZFloat(0, true); }, "SetZFloat() called on a non float element."},
        {[&] { group.SetZFloatClamped(0, true); }, "SetZFloat() called on a non float element."},
        {[&] { static_cast<void>(group.GetZFloat()); },
         "GetZFloat() called on a non float element."},
        {[&] { group.SetZFloatDefault(0); }, "SetZFloatDefault() called on a non float element."},
        {[&] { static_cast<void>(group.GetZFloatDefault()); },
         "GetZFloatDefault() called on a non float element."},
        {[&] { group.SetRange(0, 1, true); }, "SetRange() called on a non float element."},
        {[&] { static_cast<void>(group.Range()); }, "Range() called on a non float element."},
        {[&] { static_cast<void>(group.Min()); }, "Min() called on a non float element."},
        {[&] { static_cast<void>(group.Max()); }, "Max() called on a non float element."},
        {[&] { group.SetZRange({}); }, "SetZRange() called on a non ZRange element."},
        {[&] { static_cast<void>(group.GetZRange()); },
         "GetZRange() called on a non zpos element."},
        {[&] { group.SetZRangeLimit({}); }, "SetZRangeLimit() called on a non ZRange element."},
        {[&] { static_cast<void>(group.GetZRangeLimit()); },
         "GetZRange() called on a non zpos element."},
        {[&] { group.SetZPos(0); }, "SetZPos() called on a non zpos element."},
        {[&] { static_cast<void>(group.GetZPos()); }, "GetZPos() called on a non zpos element."},
        {[&] { group.SetZBuffer(buffer, true); }, "SetZBuffer() called on a non buffer element."},
        {[&] { static_cast<void>(group.GetZBuffer()); },
         "GetZBuffer() called on a non buffer element."},
        {[&] { group.SetZBufferRange(0, 1); }, "SetZBufferRange() called on a non buffer element."},
        {[&] { static_cast<void>(group.ZBufferMin()); },
         "ZBufferMin() called on a non buffer element."},
        {[&] { static_cast<void>(group.ZBufferMax()); },
         "ZBufferMax() called on a non buffer element."},
    };
    for (const auto& [call, text] : calls)
        EXPECT_EQ(failure(call), text);
    EXPECT_FALSE(group.IsMarkedChanged());

    ZString text;
    EXPECT_EQ(failure([&] { group.GetValue(text); }), "This element doesn't have GetValue()");
}

TEST(ZElementTest, OnlyTheClampedFormKeepsAFloatInItsRange)
{
    ZElement gain("gain", ZElement::ZFLOAT, nullptr);
    gain.SetZFloat(1.5f, false);
    EXPECT_EQ(gain.GetZFloat(), 1.5f);
    gain.SetZFloatClamped(1.5f, false);
    EXPECT_EQ(gain.GetZFloat(), 1.0f);
    gain.SetZFloatClamped(-7.0f, false);
    EXPECT_EQ(gain.GetZFloat(), -1.0f);

    gain.ClearMarkedChanged();
    gain.SetZFloatClamped(-9.0f, false);
    EXPECT_FALSE(gain.IsMarkedChanged()) << "the value is the same as before";

    gain.SetRange(-1200.0f, 600.0f, true);
    gain.SetZFloatClamped(std::numeric_limits<float>::quiet_NaN(), false);
    EXPECT_EQ(gain.GetZFloat(), -1200.0f);
    EXPECT_EQ(gain.Range(), 1800.0f);
}

TEST(ZElementTest, LabelsFallBackToTheNameAndAreChosenByLength)
{
    ZElement shift("pitchTranspose", ZElement::ZFLOAT, nullptr);
    EXPECT_EQ(shift.GetLabel(ZElement::kShortLabel), ZString("pitchTranspose"));
    EXPECT_EQ(shift.GetLabelToFit(4), ZString("pitchTranspose"));

    shift.SetLabel(ZElement::kShortLabel, "PiSh");
    shift.SetLabel(ZElement::kFullLabel, "Pitch Transpose");
    shift.SetLabel(ZElement::kMediumLabel, "Transp\xC3\xB6se");
    EXPECT_EQ(shift.GetLabelToFit(14), ZString("pitchTranspose"));
    EXPECT_EQ(shift.GetLabelToFit(9), ZString("Transp\xC3\xB6se"));
    EXPECT_EQ(shift.GetLabelToFit(8), ZString("PiSh"));
    EXPECT_EQ(shift.GetLabelToFit(3), ZString("PiSh")) << "none fits: the last one";

    shift.ClearLabels();
    EXPECT_EQ(shift.GetLabel(ZElement::kFullLabel), ZString("pitchTranspose"));
}

TEST(ZElementTest, TheIndexStaysInAListThatGetsShorter)
{
    ZElement scale("scale", ZElement::ZDISCRETE, nullptr);
    auto xml = boost::make_shared<ZXMLElement>("discrete");
    xml->AddAttribute("name", "Minor");
    EXPECT_EQ(scale.AddDiscreteValue("Major"), 0);
    EXPECT_EQ(scale.AddDiscreteValue(ZString("Blues")), 1);
    EXPECT_EQ(scale.AddDiscreteValue(xml), 2);
    EXPECT_EQ(*scale.GetDiscreteString(2), ZString("Minor"));
    EXPECT_EQ(*scale.GetDiscreteString(3), ZString());
    EXPECT_EQ(*scale.GetDiscreteString(-1), ZString());

    scale.SetDiscrete(9, true);
    EXPECT_EQ(scale.GetDiscrete(), 9) << "stored as given";
    scale.SetDiscreteDefault(1);
    scale.DiscreteListChanged(nullptr);
    EXPECT_EQ(scale.GetDiscrete(), 2);
    EXPECT_EQ(scale.GetDiscreteDefault(), 1);

    scale.RemoveDiscreteValues(true);
    EXPECT_EQ(scale.CountDiscreteValues(), 0);
    EXPECT_EQ(scale.GetDiscrete(), 0);
    EXPECT_EQ(scale.GetDiscreteDefault(), 0);
    EXPECT_FALSE(scale.IsMarkedChanged());
}

TEST(ZElementTest, BuffersAreCopiedAsFarAsBothReach)
{
    EXPECT_EQ(failure([] { ZElement("empty", ZElement::ZBUFFER, nullptr, 0); }),
              "Error Trying to create a buffer of improper size.");
    ZElement flags("flags", ZElement::ZBUFFER, nullptr, 3);
    ZBuffer source(2, "ZBuffer");
    source.Data()[0] = 1.0f;
    source.Data()[1] = -1.0f;
    flags.GetZBuffer()->Data()[2] = 0.5f;
    flags.SetZBuffer(source, true);
    EXPECT_FALSE(flags.IsMarkedChanged());
    flags.SetZBuffer(*flags.GetZBuffer(), false);
    EXPECT_TRUE(flags.IsMarkedChanged());
    const float* samples = flags.GetZBuffer()->Data();
    EXPECT_EQ(std::vector<float>(samples, samples + 3), (std::vector<float>{1.0f, -1.0f, 0.5f}));
}

TEST(ZElementTest, ANameIsLookedForInsideAChildBeforeTheNextOne)
{
    const auto root = element("root", ZElement::ZGROUP);
    const auto first = element("first", ZElement::ZGROUP);
    const auto grandchild = element("key", ZElement::ZFLOAT);
    const auto second = element("key", ZElement::ZDISCRETE);
    root->AddSubElement(first);
    root->AddSubElement(second);
    first->AddSubElement(grandchild);

    boost::shared_ptr<ZElement> found;
    ASSERT_TRUE(root->FindSubElement("key", found));
    EXPECT_EQ(found, grandchild);
    EXPECT_FALSE(root->FindSubElement("root", found));
    EXPECT_FALSE(root->GetSubElement(2, found));
    EXPECT_FALSE(root->GetSubElement(-1, found));
    EXPECT_EQ(found, grandchild);
    ASSERT_TRUE(root->GetSubElement(1, found));
    EXPECT_EQ(found, second);
}

TEST(ZElementTest, AChildHasOneContainerForAsLongAsThatLives)
{
    const auto child = element("child", ZElement::ZFLOAT);
    auto first = element("first", ZElement::ZGROUP);
    const auto second = element("second", ZElement::ZGROUP);
    first->AddSubElement(child);
    second->AddSubElement(child);
    EXPECT_EQ(child->GetContainer(), first.get());
    EXPECT_EQ(second->GetSubElementCount(), 0);

    first.reset();
    EXPECT_EQ(child->GetContainer(), nullptr);
    second->AddSubElement(child);
    EXPECT_EQ(second->GetSubElementCount(), 1);
}

class ZElementNotificationTest : public testing::Test
{
protected:
    SmallApplication application;
    Observer host{&application};
    Observer view{&application};
    ZElement gain{"gain", ZElement::ZFLOAT, &application};

    void SetUp() override
    {
        gain.AddObserver(&host);
        gain.AddObserver(&view);
        application.ProcessQueue();
        host.heard.clear();
        view.heard.clear();
    }
};

TEST_F(ZElementNotificationTest, ANewObserverIsToldThatItIsAttached)
{
    Observer late(&application);
    gain.AddObserver(&late);
    EXPECT_EQ(heardBy(late, application), Ids{ZATTACHEDTOELEMENT});
    EXPECT_EQ(late.elementId, elementIdOf(&gain));
    EXPECT_TRUE(view.heard.empty());
    gain.RemoveObserver(&late);
    EXPECT_EQ(gain.GetObserverCount(), 2);
    EXPECT_EQ(gain.GetObserver(1), &view);
    EXPECT_EQ(gain.GetObserver(2), nullptr);
}

TEST_F(ZElementNotificationTest, ManyChangesAreHeardOnceAfterTheFlush)
{
    gain.SetZFloat(0.1f, false);
    gain.SetZFloat(0.2f, false);
    EXPECT_EQ(heardBy(view, application), Ids{}) << "a setter only marks";
    gain.FlushMark(&host);
    gain.SetZFloat(0.3f, false);
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTCHANGED});
    EXPECT_EQ(host.heard, Ids{ZELEMENTCHANGED});
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(view, application), Ids{}) << "the flush has taken the mark";

    gain.SetZFloat(0.4f, true);
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(view, application), Ids{}) << "the quiet form does not mark";
}

TEST_F(ZElementNotificationTest, WhatTheHostHasSetIsNotHandedBackToIt)
{
    gain.SetZFloat(0.1f, true);
    gain.MarkChangedByHost();
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTCHANGED});
    EXPECT_TRUE(host.heard.empty());

    gain.MarkChangedByHost();
    gain.SetZFloat(0.2f, false);  // after the host's value: the host does not know this one
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(host, application), Ids{ZELEMENTCHANGED});
}

TEST_F(ZElementNotificationTest, TheSenderDoesNotHearItself)
{
    gain.ElementChanged(&view, false);
    EXPECT_EQ(heardBy(view, application), Ids{});
    EXPECT_EQ(host.heard, Ids{ZELEMENTCHANGED});

    view.SetLooper(nullptr);
    gain.ElementChanged(nullptr, false);
    EXPECT_EQ(heardBy(view, application), Ids{}) << "without a looper nothing arrives";
    EXPECT_EQ(host.heard.size(), 2u);
}

TEST_F(ZElementNotificationTest, AChangeOfFormIsToldAtOnceAndMarked)
{
    gain.SetRange(0.0f, 2.0f, false);
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTUPDATED});
    EXPECT_TRUE(gain.IsMarkedChanged());
    gain.ClearMarkedChanged();
    gain.SetRange(0.0f, 3.0f, true);
    EXPECT_EQ(heardBy(view, application), Ids{});
    EXPECT_FALSE(gain.IsMarkedChanged());

    ZElement scale("scale", ZElement::ZDISCRETE, &application);
    scale.AddObserver(&view);
    application.ProcessQueue();
    scale.AddDiscreteValue("Major");
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTUPDATED});
    EXPECT_FALSE(scale.IsMarkedChanged());
    scale.RemoveDiscreteValues(false);
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTUPDATED});
    EXPECT_TRUE(scale.IsMarkedChanged());
    scale.RemoveObserver(&view);
}

TEST_F(ZElementNotificationTest, AnObserverMayLeaveWhileItIsTold)
{
    host.onMessage = [this] {
        gain.RemoveObserver(&host);
        gain.RemoveObserver(&view);
    };
    gain.ElementChanged(nullptr, false);
    EXPECT_EQ(heardBy(view, application), Ids{ZELEMENTCHANGED}) << "it was on its way";
    gain.ElementChanged(nullptr, false);
    EXPECT_EQ(heardBy(view, application), Ids{});
}

TEST(ZElementThreadTest, SettersNeitherAllocateNorLock)
{
    SmallApplication application;
    Observer view(&application);
    ZElement gain("gain", ZElement::ZFLOAT, &application);
    ZElement key("key", ZElement::ZDISCRETE, &application);
    ZElement flags("flags", ZElement::ZBUFFER, &application, 12);
    ZElement place("place", ZElement::ZPOS, &application);
    ZElement run("run", ZElement::ZRANGE, &application);
    for (ZElement* observed : {&gain, &key, &flags, &place, &run})
        observed->AddObserver(&view);
    key.AddDiscreteValue("A");
    const ZBuffer samples(12, "ZBuffer");

    const RealtimeGuard guard;
    gain.SetZFloat(0.5f * gain.Range() + gain.Min(), false);
    gain.SetZFloatClamped(9.0f, false);
    gain.MarkChangedByHost();
    key.SetDiscrete(key.CountDiscreteValues() - 1, false);
    flags.SetZBuffer(samples, false);
    static_cast<void>(flags.GetZBuffer()->Data());
    place.SetZPos(place.GetZPos() + 1);
    run.SetZRange(run.GetZRangeLimit());
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

TEST(ZElementThreadTest, AudioThreadAndInterfaceThreadShareElements)
{
    SmallApplication application;
    Observer view(&application);
    ZElement gain("gain", ZElement::ZFLOAT, &application);
    ZElement key("key", ZElement::ZDISCRETE, &application);
    ZElement flags("flags", ZElement::ZBUFFER, &application, 12);
    key.SetArchiveDiscreteList(true);
    gain.AddObserver(&view);
    float lastHeard = 0.0f;
    view.onMessage = [&] { lastHeard = gain.GetZFloat(); };

    std::atomic<bool> ended{false};
    std::thread audio([&] {
        ZBuffer samples(12, "ZBuffer");
        for (int i = 1; i <= 20000; ++i) {
            gain.SetZFloat(static_cast<float>(i), false);
            if (i % 3 == 0)
                gain.MarkChangedByHost();
            key.SetDiscrete(key.CountDiscreteValues() - 1, true);
            flags.SetZBuffer(samples, false);
        }
        ended = true;
    });
    while (!ended) {
        gain.FlushMark(nullptr);
        application.ProcessQueue();
        key.AddDiscreteValue("item");
        static_cast<void>(key.GetDiscreteString(key.GetDiscrete()));
        key.RestoreBody(key.ExtractXML());
        flags.RestoreBody(flags.ExtractXML());
        key.RemoveDiscreteValues(true);
    }
    audio.join();
    gain.FlushMark(nullptr);
    application.ProcessQueue();
    EXPECT_EQ(lastHeard, 20000.0f) << "the last change is never lost";
}

}  // namespace orvane

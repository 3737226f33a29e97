// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZElement.h"

#include "support/ExpectZException.h"
#include "support/MessageRecorder.h"
#include "support/RealtimeGuard.h"
#include "support/SmallApplication.h"
#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

using namespace orvane;

namespace
{

/// What the observer hears when the application's queue runs.
MessageIds heardBy(MessageRecorder& observer, SmallApplication& application)
{
    observer.ids.clear();
    application.ProcessQueue();
    return observer.ids;
}

}  // namespace

TEST(ZElementTest, RefusesOperationsOfAnotherType)
{
    ZElement group("group", ZElement::ZGROUP, nullptr);
    expectZException("SetZFloat() called on a non float element.",
                     [&] { group.SetZFloatClamped(0, true); });
    for (const std::function<void()>& call : std::initializer_list<std::function<void()>>{
             [&] { (void)group.GetDiscreteDefault(); }, [&] { group.SetZRange({}); },
             [&] { (void)group.GetZPos(); }, [&] { (void)group.ZBufferMax(); }})
        EXPECT_THROW(call(), ZException);
}

TEST(ZElementTest, ClampedSetterKeepsAFloatInItsRange)
{
    ZElement gain("gain", ZElement::ZFLOAT, nullptr);
    gain.SetZFloat(1.5f, false);
    EXPECT_EQ(gain.GetZFloat(), 1.5f);
    gain.SetZFloatClamped(1.5f, false);
    EXPECT_EQ(gain.GetZFloat(), 1.0f);

    gain.ClearMarkedChanged();
    gain.SetZFloatClamped(9.0f, false);
    EXPECT_FALSE(gain.IsMarkedChanged()) << "the value is the same as before";

    gain.SetRange(-1200.0f, 600.0f, true);
    gain.SetZFloatClamped(std::numeric_limits<float>::quiet_NaN(), false);
    EXPECT_EQ(gain.GetZFloat(), -1200.0f);
}

TEST(ZElementTest, IndexStaysInAShorterList)
{
    ZElement scale("scale", ZElement::ZDISCRETE, nullptr);
    for (const char* name : {"Major", "Blues", "Minor"})
        scale.AddDiscreteValue(name);
    EXPECT_EQ(*scale.GetDiscreteString(-1), ZString());

    scale.SetDiscrete(9, true);
    EXPECT_EQ(scale.GetDiscrete(), 9) << "stored as given";
    scale.SetDiscreteDefault(1);
    scale.DiscreteListChanged(nullptr);
    EXPECT_EQ(scale.GetDiscrete(), 2);
    EXPECT_EQ(scale.GetDiscreteDefault(), 1);
}

TEST(ZElementTest, ChildHasOneContainerAtATime)
{
    const auto child = boost::make_shared<ZElement>("child", ZElement::ZFLOAT, nullptr);
    ZElement later("later", ZElement::ZGROUP, nullptr);
    {
        ZElement first("first", ZElement::ZGROUP, nullptr);
        first.AddSubElement(child);
        later.AddSubElement(child);
        EXPECT_EQ(child->GetContainer(), &first);
        EXPECT_EQ(later.GetSubElementCount(), 0);
    }
    later.AddSubElement(child);
    EXPECT_EQ(child->GetContainer(), &later);
}

struct ZElementNotificationTest : testing::Test
{
    /// What the view hears when the application's queue runs.
    MessageIds Heard() { return heardBy(view, application); }

    SmallApplication application;
    MessageRecorder host{&application};
    MessageRecorder view{&application};
    ZElement gain{"gain", ZElement::ZFLOAT, &application};

    void SetUp() override
    {
        gain.AddObserver(&host);
        gain.AddObserver(&view);
        ASSERT_EQ(Heard(), MessageIds{ZATTACHEDTOELEMENT});
        host.ids.clear();
    }
};

TEST_F(ZElementNotificationTest, ManyChangesAreHeardOnce)
{
    gain.SetZFloat(0.1f, false);
    gain.SetZFloat(0.2f, false);
    EXPECT_EQ(Heard(), MessageIds{}) << "a setter only marks";
    gain.FlushMark(&host);
    gain.SetZFloat(0.3f, false);
    gain.FlushMark(&host);
    EXPECT_EQ(Heard(), MessageIds{ZELEMENTCHANGED});
    EXPECT_EQ(host.ids, MessageIds{ZELEMENTCHANGED});
    gain.SetZFloat(0.4f, true);
    gain.FlushMark(&host);
    EXPECT_EQ(Heard(), MessageIds{}) << "the mark is taken, the quiet form sets none";
}

TEST_F(ZElementNotificationTest, HostDoesNotHearItsOwnChanges)
{
    gain.MarkChangedByHost();
    gain.FlushMark(&host);
    EXPECT_EQ(Heard(), MessageIds{ZELEMENTCHANGED});
    EXPECT_TRUE(host.ids.empty());

    gain.MarkChangedByHost();
    gain.SetZFloat(0.2f, false);  // after the host's value: the host does not know this one
    gain.FlushMark(&host);
    EXPECT_EQ(heardBy(host, application), MessageIds{ZELEMENTCHANGED});
}

TEST_F(ZElementNotificationTest, ChangeOfRangeIsToldAtOnceAndMarked)
{
    gain.SetRange(0.0f, 3.0f, true);
    EXPECT_EQ(Heard(), MessageIds{});
    EXPECT_FALSE(gain.IsMarkedChanged());
    gain.SetRange(0.0f, 2.0f, false);
    EXPECT_EQ(Heard(), MessageIds{ZELEMENTUPDATED});
    EXPECT_TRUE(gain.IsMarkedChanged());
}

TEST_F(ZElementNotificationTest, ReplacedListIsToldOnce)
{
    ZElement scale("scale", ZElement::ZDISCRETE, &application);
    scale.AddDiscreteValue("Chromatic");
    scale.AddObserver(&view);
    ASSERT_EQ(Heard(), MessageIds{ZATTACHEDTOELEMENT});
    scale.SetDiscrete(2, true);
    scale.ReplaceDiscreteValues({ZString("Major"), ZString("Minor")});
    EXPECT_EQ(Heard(), MessageIds{ZELEMENTUPDATED});
    EXPECT_EQ(scale.CountDiscreteValues(), 2);
    EXPECT_EQ(*scale.GetDiscreteString(1), ZString("Minor"));
    EXPECT_EQ(scale.GetDiscrete(), 1) << "clamped to the list";
}

TEST_F(ZElementNotificationTest, ObserversMayLeaveWhileTheyAreTold)
{
    host.onMessage = [this] {
        gain.RemoveObserver(&host);
        gain.RemoveObserver(&view);
    };
    gain.ElementChanged(nullptr, false);
    EXPECT_EQ(Heard(), MessageIds{ZELEMENTCHANGED}) << "it was on its way";
    gain.ElementChanged(nullptr, false);
    EXPECT_EQ(Heard(), MessageIds{});
}

TEST(ZElementThreadTest, ThreadsShareElements)
{
    SmallApplication application;
    MessageRecorder view(&application);
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
        const RealtimeGuard guard;
        for (int i = 1; i <= 20000; ++i) {
            gain.SetZFloat(static_cast<float>(i), false);
            if (i % 3 == 0)
                gain.MarkChangedByHost();
            key.SetDiscrete(key.CountDiscreteValues() - 1, true);
            flags.SetZBuffer(samples, false);
        }
        EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
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

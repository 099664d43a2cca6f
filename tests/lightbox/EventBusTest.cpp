#include "scene/EventBus.h"

#include "scene/IdleQueue.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

using lightbox::EventBus;
using lightbox::IdleQueue;

TEST(EventBusTest, CallbacksMayRemoveAndAddWhileTheyRun) {
    EventBus events;
    std::string log;
    EventBus::Id second = 0;
    EventBus::Id self = 0;
    self = events.AddCallback("timeChanged", [&] {
        log += "1";
        EXPECT_TRUE(events.Remove(second));
        EXPECT_TRUE(events.Remove(self));
        events.AddCallback("timeChanged", [&] { log += "new"; });
    });
    second = events.AddCallback("timeChanged", [&] { log += "2"; });
    events.AddCallback("timeChanged", [&] { log += "3"; });
    events.Fire("timeChanged");
    EXPECT_EQ(log, "13");
    events.Fire("timeChanged");
    EXPECT_EQ(log, "133new");
    EXPECT_FALSE(events.Remove(self));
    EXPECT_FALSE(events.Remove(0));
    EXPECT_EQ(events.CallbackCount(), 2U);
}

TEST(EventBusTest, ACallbackThatThrowsKeepsNoOtherFromItsEvent) {
    EventBus events;
    std::string log;
    events.AddCallback("timeChanged", [&] { log += "1"; });
    events.AddCallback("timeChanged", [] { throw std::runtime_error("first"); });
    events.AddCallback("timeChanged", [] { throw std::runtime_error("second"); });
    events.AddCallback("timeChanged", [&] { log += "2"; });
    try {
        events.Fire("timeChanged");
        ADD_FAILURE() << "the failure is told";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    EXPECT_EQ(log, "12");
}

TEST(EventBusTest, ConditionsCallOnlyOnChange) {
    EventBus events;
    std::string log;
    events.AddConditionCallback("playingBack", [&](bool state) { log += state ? "on " : "off "; });
    events.SetCondition("playingBack", false);
    events.SetCondition("playingBack", true);
    events.SetCondition("playingBack", true);
    events.SetCondition("playingBack", false);
    EXPECT_EQ(log, "on off ");
    EXPECT_EQ(events.AddCallback("noSuchEvent", [] {}), 0);
    EXPECT_EQ(events.AddConditionCallback("noSuchCondition", [](bool) {}), 0);
    events.Fire("noSuchEvent");
}

TEST(IdleQueueTest, DrainsInOrderAndDoesNotHangOnEndlessChains) {
    EventBus events;
    IdleQueue idle(events);
    int idled = 0;
    events.AddCallback("idle", [&] { ++idled; });
    std::string log;
    idle.Add([&] { log += "low"; }, true);
    idle.Add([&] {
        log += "a";
        idle.Add([&] { log += "c"; });
        EXPECT_EQ(idle.Drain(), 0U) << "already draining";
    });
    idle.Add([&] { log += "b"; });
    EXPECT_EQ(idle.Drain(), 4U);
    EXPECT_EQ(log, "abclow");
    EXPECT_EQ(idled, 1);
    EXPECT_EQ(idle.Drain(), 0U);
    EXPECT_EQ(idled, 1);

    std::function<void()> again = [&] { idle.Add(again); };
    idle.Add(again);
    EXPECT_GT(idle.Drain(), 1U);
    EXPECT_FALSE(idle.IsEmpty());
    idle.Clear();
    EXPECT_TRUE(idle.IsEmpty());
}

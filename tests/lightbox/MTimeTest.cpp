#include "HostFixture.h"
#include "scene/EventBus.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

#include <maya/MAnimControl.h>
#include <maya/MTime.h>

#include <sstream>

using lightbox::RateOf;
using lightbox::UnitFromName;
using lightbox::UnitName;

class MTimeTest : public HostFixture {
protected:
    static std::string Written(const MTime& time) {
        std::ostringstream out;
        out << time;
        return out.str();
    }
};

TEST_F(MTimeTest, ConvertsBetweenUnits) {
    const struct {
        double value;
        MTime::Unit from;
        MTime::Unit to;
        double expected;
    } cases[] = {
        {24, MTime::kFilm, MTime::kSeconds, 1},
        {1, MTime::kSeconds, MTime::kPALFrame, 25},
        {12, MTime::kFilm, MTime::kNTSCFrame, 15},
        {2, MTime::kHours, MTime::kMinutes, 120},
        {1500, MTime::kMilliseconds, MTime::kGames, 22.5},
        {-999, MTime::kFilm, MTime::kFilm, -999},
        {24, MTime::k23_976FPS, MTime::kSeconds, 1.001},
        {1001, MTime::kSeconds, MTime::k29_97FPS, 30000},
        {7, MTime::kFilm, MTime::k6000FPS, 1750},
        {3, MTime::kNTSCField, MTime::kNTSCFrame, 1.5},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(MTime(c.value, c.from).as(c.to), c.expected) << c.value << ' ' << UnitName(c.from);
    }
    // Every pair of frame units there and back keeps whole frames whole, so that keys do not drift.
    for (int from = MTime::kHours; from < MTime::kUserDef; ++from) {
        for (int to = MTime::kHours; to < MTime::kUserDef; ++to) {
            const MTime time(97, static_cast<MTime::Unit>(from));
            EXPECT_EQ(MTime(time.as(static_cast<MTime::Unit>(to)), static_cast<MTime::Unit>(to)), time);
        }
    }
}

TEST_F(MTimeTest, EveryUnitHasANameAndARate) {
    for (int unit = MTime::kHours; unit < MTime::kUserDef; ++unit) {
        const auto value = static_cast<MTime::Unit>(unit);
        EXPECT_EQ(UnitFromName(UnitName(value)), value) << unit;
        EXPECT_GT(RateOf(value).PerSecond(), 0.0) << unit;
    }
    EXPECT_EQ(UnitFromName("24fps"), MTime::kFilm);
    EXPECT_EQ(UnitFromName("15fps"), MTime::kGames);
    for (const char* name : {"", "fps", "24", "7fps", "film "}) {
        EXPECT_EQ(UnitFromName(name), MTime::kInvalid) << name;
    }
}

TEST_F(MTimeTest, ComparesAndCalculatesAcrossUnits) {
    EXPECT_EQ(MTime(24, MTime::kFilm), MTime(1, MTime::kSeconds));
    EXPECT_LT(MTime(24, MTime::kFilm), MTime(26, MTime::kPALFrame));
    EXPECT_NE(MTime(1, MTime::kFilm), MTime(1, MTime::kPALFrame));
    const MTime sum = MTime(12, MTime::kFilm) + MTime(1, MTime::kSeconds);
    EXPECT_EQ(sum.unit(), MTime::kFilm);
    EXPECT_EQ(sum.value(), 36.0);
    MTime time(5, MTime::kFilm);
    EXPECT_EQ((time++).value(), 5.0);
    EXPECT_EQ((++time).value(), 7.0);
    EXPECT_EQ(MTime(48, MTime::kFilm) / MTime(1, MTime::kSeconds), 2.0);
}

TEST_F(MTimeTest, IsWrittenAsFramesInTheUiUnit) {
    EXPECT_EQ(Written(MTime(12, MTime::kFilm)), "12");
    EXPECT_EQ(Written(MTime(-999, MTime::kFilm)), "-999");
    EXPECT_EQ(Written(MTime(0.1, MTime::kFilm)), "0.1");
    EXPECT_EQ(Written(MTime(1e7 + 0.25, MTime::kFilm)), "10000000.25");
    int changes = 0;
    host_.events().AddCallback("timeUnitChanged", [&] { ++changes; });
    EXPECT_EQ(MTime::setUIUnit(MTime::kPALFrame), MS::kSuccess);
    EXPECT_EQ(MTime::setUIUnit(MTime::kPALFrame), MS::kSuccess);
    EXPECT_EQ(MTime::setUIUnit(MTime::kInvalid), MS::kFailure);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Written(MTime(24, MTime::kFilm)), "25");
}

TEST_F(MTimeTest, TimelineKeepsItsRangesInOrder) {
    lightbox::Timeline& time = host_.time();
    int fired = 0;
    host_.events().AddCallback("timeChanged", [&] { ++fired; });
    MAnimControl::setCurrentTime(MTime(1, MTime::kSeconds));
    MAnimControl::setCurrentTime(MTime(24, MTime::kFilm));
    EXPECT_EQ(fired, 1);
    time.SetCurrentTime(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(time.CurrentTime(), 24.0);

    EXPECT_TRUE(MAnimControl::setMinMaxTime(MTime(-10), MTime(300)));
    EXPECT_EQ(time.AnimationStart(), -10.0);
    EXPECT_EQ(time.AnimationEnd(), 300.0);
    EXPECT_FALSE(MAnimControl::setMaxTime(MTime(-11)));
    EXPECT_TRUE(time.SetAnimationRange(5, 50));
    EXPECT_EQ(time.MinTime(), 5.0);
    EXPECT_EQ(time.MaxTime(), 50.0);

    EXPECT_EQ(time.SliderRange(), std::make_pair(24.0, 25.0)) << "nothing highlighted";
    EXPECT_FALSE(time.HighlightRange(8, 8));
    EXPECT_TRUE(time.HighlightRange(8, 12));
    EXPECT_EQ(time.SliderRange(), std::make_pair(8.0, 12.0));
    time.ClearHighlight();
    EXPECT_EQ(time.SliderRange().first, 24.0);
}

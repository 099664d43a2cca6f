#include "scene/TimeUnits.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace lightbox {

namespace {

struct UnitRow {
    MTime::Unit unit;
    const char* name;
    UnitRate rate;
};

const UnitRow UNITS[] = {
    {MTime::kHours, "hour", {1, 3600}},
    {MTime::kMinutes, "min", {1, 60}},
    {MTime::kSeconds, "sec", {1, 1}},
    {MTime::kMilliseconds, "millisec", {1000, 1}},
    {MTime::kGames, "game", {15, 1}},
    {MTime::kFilm, "film", {24, 1}},
    {MTime::kPALFrame, "pal", {25, 1}},
    {MTime::kNTSCFrame, "ntsc", {30, 1}},
    {MTime::kShowScan, "show", {48, 1}},
    {MTime::kPALField, "palf", {50, 1}},
    {MTime::kNTSCField, "ntscf", {60, 1}},
    {MTime::k2FPS, "2fps", {2, 1}},
    {MTime::k3FPS, "3fps", {3, 1}},
    {MTime::k4FPS, "4fps", {4, 1}},
    {MTime::k5FPS, "5fps", {5, 1}},
    {MTime::k6FPS, "6fps", {6, 1}},
    {MTime::k8FPS, "8fps", {8, 1}},
    {MTime::k10FPS, "10fps", {10, 1}},
    {MTime::k12FPS, "12fps", {12, 1}},
    {MTime::k16FPS, "16fps", {16, 1}},
    {MTime::k20FPS, "20fps", {20, 1}},
    {MTime::k40FPS, "40fps", {40, 1}},
    {MTime::k75FPS, "75fps", {75, 1}},
    {MTime::k80FPS, "80fps", {80, 1}},
    {MTime::k100FPS, "100fps", {100, 1}},
    {MTime::k120FPS, "120fps", {120, 1}},
    {MTime::k125FPS, "125fps", {125, 1}},
    {MTime::k150FPS, "150fps", {150, 1}},
    {MTime::k200FPS, "200fps", {200, 1}},
    {MTime::k240FPS, "240fps", {240, 1}},
    {MTime::k250FPS, "250fps", {250, 1}},
    {MTime::k300FPS, "300fps", {300, 1}},
    {MTime::k375FPS, "375fps", {375, 1}},
    {MTime::k400FPS, "400fps", {400, 1}},
    {MTime::k500FPS, "500fps", {500, 1}},
    {MTime::k600FPS, "600fps", {600, 1}},
    {MTime::k750FPS, "750fps", {750, 1}},
    {MTime::k1200FPS, "1200fps", {1200, 1}},
    {MTime::k1500FPS, "1500fps", {1500, 1}},
    {MTime::k2000FPS, "2000fps", {2000, 1}},
    {MTime::k3000FPS, "3000fps", {3000, 1}},
    {MTime::k6000FPS, "6000fps", {6000, 1}},
    {MTime::k23_976FPS, "23.976fps", {24000, 1001}},
    {MTime::k29_97FPS, "29.97fps", {30000, 1001}},
    {MTime::k29_97DF, "29.97df", {30000, 1001}},
    {MTime::k47_952FPS, "47.952fps", {48000, 1001}},
    {MTime::k59_94FPS, "59.94fps", {60000, 1001}},
    {MTime::k44100FPS, "44100fps", {44100, 1}},
    {MTime::k48000FPS, "48000fps", {48000, 1}},
};

} // namespace

UnitRate RateOf(MTime::Unit unit) {
    for (const UnitRow& row : UNITS) {
        if (row.unit == unit) {
            return row.rate;
        }
    }
    return {};
}

std::string UnitName(MTime::Unit unit) {
    for (const UnitRow& row : UNITS) {
        if (row.unit == unit) {
            return row.name;
        }
    }
    return {};
}

MTime::Unit UnitFromName(const std::string& name) {
    for (const UnitRow& row : UNITS) {
        if (name == row.name) {
            return row.unit;
        }
    }
    const std::string suffix = "fps";
    if (name.size() > suffix.size() &&
        name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0) {
        for (const UnitRow& row : UNITS) {
            if (row.rate.denominator == 1 && row.unit >= MTime::kGames &&
                name == std::to_string(static_cast<int>(row.rate.numerator)) + suffix) {
                return row.unit;
            }
        }
    }
    return MTime::kInvalid;
}

} // namespace lightbox

#include "paint/PenPressure.h"

#include "paint/BrushPreset.h"
#include "paint/ToolTable.h"

#include <QSet>

#include <gtest/gtest.h>

using vellix::BrushPreset;
using vellix::PenPressure;
using vellix::PressureCurve;

TEST(PressureCurveTest, NeverFallsAndGoesThroughItsPoints) {
    EXPECT_EQ(PressureCurve().At(0.3f), 0.3f) << "straight, to the bit";
    for (const int least : {0, 20, 100}) {
        for (const int at : {5, 30, 50, 95}) {
            for (const int middle : {0, 10, 50, 88, 100}) {
                const PressureCurve curve = {least, at, middle};
                ASSERT_TRUE(curve.IsValid());
                const float floor = static_cast<float>(least) / 100.0f;
                EXPECT_FLOAT_EQ(curve.At(0.0f), floor);
                EXPECT_FLOAT_EQ(curve.At(1.0f), 1.0f);
                EXPECT_NEAR(curve.At(static_cast<float>(at) / 100.0f),
                            floor + (1.0f - floor) * static_cast<float>(middle) / 100.0f, 1e-6);
                float last = floor;
                for (int step = 0; step <= 200; ++step) {
                    const float value = curve.At(static_cast<float>(step) / 200.0f);
                    EXPECT_GE(value, last - 1e-6f) << least << ' ' << at << ' ' << middle << ' ' << step;
                    last = value;
                }
            }
        }
    }
    EXPECT_EQ(PressureCurve({30, 50, 50}).At(7.0f), 1.0f);
    EXPECT_EQ(PressureCurve({30, 50, 50}).At(-7.0f), 0.3f);
}

TEST(PenPressureTest, ASizeIsAtLeastOnePixelAndItsOwnWithoutTheSwitch) {
    PenPressure pressure;
    pressure.size = {0, 50, 20};
    EXPECT_EQ(pressure.SizeAt(40, 0.5f), 40);
    pressure.setsSize = true;
    EXPECT_EQ(pressure.SizeAt(40, 0.5f), 8);
    EXPECT_EQ(pressure.SizeAt(40, 0.0f), 1);
    EXPECT_EQ(pressure.SizeAt(40, 1.0f), 40);
}

TEST(BrushPresetTest, WhatIsWrittenIsReadAndNothingElse) {
    QSet<QString> names;
    const std::vector<BrushPreset> presets = BrushPreset::Defaults();
    EXPECT_EQ(presets.size(), std::size_t(BrushPreset::COUNT));
    for (const BrushPreset& preset : presets) {
        BrushPreset read;
        EXPECT_TRUE(BrushPreset::FromText(preset.ToText(), read)) << preset.ToText().toStdString();
        EXPECT_EQ(read.ToText(), preset.ToText());
        EXPECT_EQ(read.name, preset.name);
        names.insert(preset.name);
    }
    EXPECT_EQ(names.size(), int(BrushPreset::COUNT));

    const char* const good = "brush 30 90 80 1 1 25 50 45 10 40 55 A  name = \"with\" all, of it";
    BrushPreset preset;
    ASSERT_TRUE(BrushPreset::FromText(good, preset));
    EXPECT_EQ(preset.name, "A name = \"with\" all, of it");
    EXPECT_EQ(preset.pressure.size.middleAt, 40);
    for (const char* bad :
         {"", "brush", "broom 30 90 80 1 1 25 50 45 10 40 55 Name",
          "brush 101 90 80 1 1 25 50 45 10 40 55 Name", "brush 30 0 80 1 1 25 50 45 10 40 55 Name",
          "brush 30 90 80 2 1 25 50 45 10 40 55 Name", "brush 30 90 80 1 1 25 50 45 10 99 55 Name",
          "brush 30 90 80 1 1 -1 50 45 10 40 55 Name", "brush 30 90 80 1 1 25 50 45 10 40 55",
          "brush 30 90 80 1 1 25 50 45 10 40 55 ", "brush x 90 80 1 1 25 50 45 10 40 55 Name",
          "line 60 90 80 1 1 25 50 45 10 40 55 Name"}) {
        EXPECT_FALSE(BrushPreset::FromText(bad, preset)) << bad;
    }
    EXPECT_EQ(preset.size, 30) << "left alone";
}

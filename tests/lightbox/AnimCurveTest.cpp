#include "scene/AnimCurve.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using namespace lightbox;

namespace {

using Key = AnimCurve::Key;

Key KeyAt(double time, double value, TangentType in, TangentType out) {
    Key key;
    key.time = time;
    key.value = value;
    key.inType = in;
    key.outType = out;
    return key;
}

AnimCurve CurveOf(const std::vector<Key>& keys) {
    AnimCurve curve;
    curve.SetKeys(keys);
    return curve;
}

AnimCurve Same(TangentType type, const std::vector<std::pair<double, double>>& points) {
    std::vector<Key> keys;
    keys.reserve(points.size());
    for (const auto& point : points) {
        keys.push_back(KeyAt(point.first, point.second, type, type));
    }
    return CurveOf(keys);
}

struct Sample {
    double time;
    double value;
};

void ExpectSamples(const AnimCurve& curve, const std::vector<Sample>& samples) {
    for (const Sample& sample : samples) {
        EXPECT_NEAR(curve.Evaluate(sample.time), sample.value, 1e-9) << "at " << sample.time;
    }
}

} // namespace

TEST(AnimCurveTest, ValuesBetweenKeys) {
    const struct {
        const char* what;
        AnimCurve curve;
        std::vector<Sample> samples;
    } rows[] = {
        {"no keys", AnimCurve(), {{5, 0}}},
        {"one key", Same(TangentType::Linear, {{3, 7}}), {{-1, 7}, {3, 7}, {9, 7}}},
        {"linear", Same(TangentType::Linear, {{0, 0}, {10, 5}, {20, 5}}), {{4, 2}, {10, 5}, {15, 5}}},
        // Two flat tangents make the smooth step 3u² - 2u³.
        {"flat", Same(TangentType::Flat, {{0, 0}, {10, 8}}), {{2.5, 1.25}, {5, 4}, {7.5, 6.75}}},
        {"automatic ends are flat", Same(TangentType::Auto, {{0, 0}, {10, 8}}), {{2.5, 1.25}}},
        {"spline of two keys is straight", Same(TangentType::Spline, {{0, 0}, {10, 8}}), {{2.5, 2}}},
        // Slopes 1, 0, -1: h10 and h11 of the Hermite form at 1/2 are 1/8 and -1/8 of the length.
        {"spline over a hill",
         Same(TangentType::Spline, {{0, 0}, {10, 10}, {20, 0}}),
         {{5, 6.25}, {15, 6.25}}},
        // Flat at the hill: slopes 0, 0.
        {"automatic over a hill", Same(TangentType::Auto, {{0, 0}, {10, 10}, {20, 0}}), {{5, 5}, {10, 10}}},
        // The middle slope would be 10.1/20 by its neighbours; three times 0.1/10 is as steep as it may be.
        {"automatic near a plateau",
         Same(TangentType::Auto, {{0, 0}, {10, 10}, {20, 10.1}}),
         {{15, 10.05 + 0.03 * 10 / 8}}},
        {"clamped holds near values",
         Same(TangentType::Clamped, {{0, 0}, {10, 4}, {20, 4.04}}),
         {{15, 4.02}}},
        {"stepped",
         CurveOf({KeyAt(0, 1, TangentType::Linear, TangentType::Step),
                  KeyAt(10, 2, TangentType::Linear, TangentType::StepNext),
                  KeyAt(20, 3, TangentType::Linear, TangentType::Step)}),
         {{9.99, 1}, {10, 2}, {10.01, 3}, {20, 3}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ExpectSamples(row.curve, row.samples);
    }
}

TEST(AnimCurveTest, FixedTangentsCountInSeconds) {
    // Half a second of 24 frames: a rise of 2 in a second is 1/12 for a frame.
    std::vector<Key> keys{KeyAt(0, 0, TangentType::Fixed, TangentType::Fixed),
                          KeyAt(12, 0, TangentType::Fixed, TangentType::Fixed)};
    keys[0].out = {0.5, 1.0};
    keys[1].in = {1.0, 0.0};
    AnimCurve curve = CurveOf(keys);
    // h10(1/2) = 1/8: 12 frames x 1/12 x 1/8.
    EXPECT_NEAR(curve.Evaluate(6), 0.125, 1e-9);
    EXPECT_NEAR(curve.OutAngle(0), std::atan(1.0 / 12.0) * 180.0 / std::acos(-1.0), 1e-9);
    curve.framesPerSecond = 12.0;
    EXPECT_NEAR(curve.Evaluate(6), 0.25, 1e-9) << "the same tangent at half the rate";
    curve.valueFactor = 180.0 / std::acos(-1.0);
    EXPECT_NEAR(curve.Evaluate(6), 0.25 * curve.valueFactor, 1e-9) << "radians shown as degrees";
}

TEST(AnimCurveTest, WeightsBendTime) {
    // Control points at (12, 0) and (12, 10): at the parameter 1/2 time is 12 and value is 5; at 1/4,
    // x = 3*9/64*12 + 3*3/64*12 + 24/64 = 7.125, y = 3*3/64*10 + 10/64 = 1.5625.
    std::vector<Key> keys{KeyAt(0, 0, TangentType::Fixed, TangentType::Fixed),
                          KeyAt(24, 10, TangentType::Fixed, TangentType::Fixed)};
    keys[0].out = {1.5, 0.0};
    keys[1].in = {1.5, 0.0};
    AnimCurve curve = CurveOf(keys);
    curve.isWeighted = true;
    ExpectSamples(curve, {{0, 0}, {7.125, 1.5625}, {12, 5}, {24, 10}});
    EXPECT_NEAR(curve.OutWeight(0), 12.0, 1e-9);
    // A handle that reaches beyond the next key is cut, and the curve stays a function of time.
    curve.At(0).out = {50.0, 0.0};
    double before = curve.Evaluate(0);
    for (int quarters = 0; quarters <= 4 * 24; ++quarters) {
        const double time = quarters / 4.0;
        EXPECT_GE(curve.Evaluate(time), before - 1e-9);
        before = curve.Evaluate(time);
    }
}

TEST(AnimCurveTest, WhatLiesOutside) {
    AnimCurve curve = Same(TangentType::Linear, {{0, 0}, {10, 5}});
    const struct {
        Infinity mode;
        std::vector<Sample> samples;
    } rows[] = {{Infinity::Constant, {{-4, 0}, {14, 5}}},
                {Infinity::Linear, {{-4, -2}, {14, 7}}},
                {Infinity::Cycle, {{-4, 3}, {14, 2}, {20, 0}, {24, 2}, {-10, 0}}},
                {Infinity::CycleWithOffset, {{-4, -2}, {14, 7}, {24, 12}}},
                {Infinity::Oscillate, {{-4, 2}, {14, 3}, {24, 2}, {-14, 3}}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.mode));
        curve.preInfinity = row.mode;
        curve.postInfinity = row.mode;
        ExpectSamples(curve, row.samples);
        EXPECT_TRUE(std::isfinite(curve.Evaluate(1e300)));
    }
}

TEST(AnimCurveTest, InsertingKeepsTheShape) {
    for (const bool weighted : {false, true}) {
        AnimCurve curve = Same(TangentType::Spline, {{0, 0}, {8, 10}, {20, -3}, {30, 4}});
        curve.SetWeighted(weighted);
        const AnimCurve before = curve;
        for (const double time : {3.0, 13.5, 29.0}) {
            ASSERT_TRUE(curve.InsertOnCurve(time));
        }
        EXPECT_EQ(curve.Keys().size(), 7U);
        for (int halves = -10; halves <= 70; ++halves) {
            const double time = halves / 2.0;
            EXPECT_NEAR(curve.Evaluate(time), before.Evaluate(time), 1e-6) << time << " " << weighted;
        }
        EXPECT_FALSE(curve.InsertOnCurve(8.0)) << "there is a key";
        EXPECT_FALSE(curve.InsertOnCurve(31.0)) << "outside";
    }
}

TEST(AnimCurveTest, WeightsComeAndGoWithoutAChangeOfShape) {
    AnimCurve curve = Same(TangentType::Auto, {{1, 0}, {9, 10}, {20, 12}});
    const AnimCurve before = curve;
    curve.SetWeighted(true);
    for (std::size_t i = 0; i < 3; ++i) {
        curve.At(i).inType = TangentType::Fixed;
        curve.At(i).outType = TangentType::Fixed;
    }
    for (int halves = 0; halves <= 42; ++halves) {
        const double time = halves / 2.0;
        EXPECT_NEAR(curve.Evaluate(time), before.Evaluate(time), 1e-6) << time;
    }
}

TEST(AnimCurveTest, KeysInAnyOrderAndTwiceAtATime) {
    const AnimCurve curve = Same(TangentType::Linear, {{10, 1}, {0, 0}, {10, 2}, {5, 9}});
    ASSERT_EQ(curve.Keys().size(), 3U);
    EXPECT_EQ(curve.Keys()[1].time, 5.0);
    EXPECT_EQ(curve.Evaluate(10), 2.0);
    EXPECT_EQ(curve.Find(5.00001), std::optional<std::size_t>(1));
    EXPECT_FALSE(curve.Find(5.1));
}

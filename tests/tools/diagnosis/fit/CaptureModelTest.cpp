#include "tools/diagnosis/fit/CaptureModel.h"

#include "tests/support/SimulatedHead.h"
#include "tools/model/Angles.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace qmv40;

namespace {

using Kind = diagnosis::fit::ModelError::Kind;

diagnosis::fit::HeadModel ModelOf(const SimulatedHead& head) {
    diagnosis::fit::HeadModel model;
    model.poleSphere = {head.pole[0], head.pole[1], head.pole[2]};
    model.mounting = model::ToRadians(head.mountingAngle);
    model.tip = {head.stylus[0], head.stylus[1], head.stylus[2]};
    return model;
}

SimulatedHead SomeHead() {
    SimulatedHead head;
    head.pole = {-265.75, 320.125, -480.5};
    head.mountingAngle = 31.5;
    head.stylus = {12.0, -7.0, -195.5};
    head.lockedToUnlocked = {0.0, 0.0, 0.0};
    return head;
}

constexpr double rounding = 1e-12;

TEST(HeadModel, PutsTheMachineWhereTheSimulatedHeadHasIt) {
    const SimulatedHead head = SomeHead();
    const diagnosis::fit::HeadModel model = ModelOf(head);
    for (int a = 0; a <= 90; a += 15) {
        for (int b = -180; b <= 180; b += 45) {
            const HeadAlignmentDataItem expected = head.Point(a, b);
            const model::Vector3 actual = model.Position({double(a), double(b), {}}, 0);
            EXPECT_NEAR(expected.XPosition, actual.x, 1e3 * rounding);
            EXPECT_NEAR(expected.YPosition, actual.y, 1e3 * rounding);
            EXPECT_NEAR(expected.ZPosition, actual.z, 1e3 * rounding);
        }
    }
}

TEST(HeadModel, DistinguishesTheErrorsOfAHead) {
    const SimulatedHead head = SomeHead();
    const auto model = [&](Kind kind, const model::Vector3& values) {
        diagnosis::fit::HeadModel with = ModelOf(head);
        with.errors.push_back({kind, 1, 3, values});
        return with;
    };
    const auto expectSame = [](const model::Vector3& expected, const model::Vector3& actual, const char* why) {
        EXPECT_NEAR(0.0, Length(expected - actual), 1e-10) << why;
    };
    const diagnosis::fit::HeadModel plain = ModelOf(head);
    const captures::CapturedPoint point{30.0, -45.0, {}};
    expectSame(plain.Position({45.0, -45.0, {}}, 0), model(Kind::TiltAngle, {model::ToRadians(15)}).Position(point, 1),
               "A of a point in the run");
    expectSame(plain.Position({30.0, -30.0, {}}, 0),
               model(Kind::SwivelAngle, {model::ToRadians(15)}).Position(point, 2), "B");
    expectSame(plain.Position(point, 0), model(Kind::TiltAngle, {model::ToRadians(15)}).Position(point, 0),
               "before the run");
    expectSame(plain.Position(point, 0), model(Kind::TiltAngle, {model::ToRadians(15)}).Position(point, 3),
               "after the run");
    expectSame(plain.Position(point, 0) + model::Vector3{1, 2, 3}, model(Kind::Place, {1, 2, 3}).Position(point, 1),
               "place");
}

TEST(HeadModel, DriftsFromNothingAtTheFirstPointToAllAtTheLast) {
    const double third = 1.0 / 3.0;
    const double perStep = std::log(4.0); // time constants in one step: a quarter of the rest of the drift remains
    const struct {
        diagnosis::fit::Drift drift;
        double shares[4];
        const char* why;
    } cases[] = {
        {{0.0, 0}, {0.0, third, 2.0 * third, 1.0}, "evenly"},
        {{0.0, 2}, {2.0 * third, 1.0, 0.0, third}, "the last two points were captured first"},
        {{3.0 * perStep, 0}, {0.0, 48.0 / 63.0, 60.0 / 63.0, 1.0}, "each step is a quarter of the one before"},
        {{-3.0 * perStep, 0}, {0.0, 3.0 / 63.0, 15.0 / 63.0, 1.0}, "each step is four times the one before"},
    };
    const diagnosis::fit::HeadModel plain = ModelOf(SomeHead());
    const captures::CapturedPoint point{30.0, -45.0, {}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.why);
        diagnosis::fit::HeadModel drifting = plain;
        drifting.errors.push_back({Kind::Place, 0, 4, {1.0, 2.0, 3.0}});
        drifting.errors.back().drift = each.drift;
        for (std::size_t i = 0; i < 4; ++i) {
            const model::Vector3 moved = drifting.Position(point, i) - plain.Position(point, i);
            EXPECT_NEAR(0.0, Length(moved - each.shares[i] * model::Vector3{1.0, 2.0, 3.0}), 1e-10) << i;
        }
    }
}

TEST(HeadModel, LeaningTurnsEverythingAboutThePole) {
    diagnosis::fit::HeadModel model = ModelOf(SomeHead());
    const captures::CapturedPoint point{30.0, -45.0, {}};
    const model::Vector3 upright = model.Position(point, 0) - model.poleSphere;
    model.errors.push_back({Kind::LeaningHead, 0, 1, {model::ToRadians(90), 0.0}});
    const model::Vector3 leant = model.Position(point, 0) - model.poleSphere;
    EXPECT_NEAR(0.0, Length(leant - model::Vector3{upright.x, -upright.z, upright.y}), 1e-10)
        << "a quarter turn about X";
}

TEST(HeadModel, DerivativesAreThoseOfItsPositions) {
    diagnosis::fit::HeadModel model = ModelOf(SomeHead());
    model.errors = {{Kind::TiltAngle, 0, 9, {0.2}},          {Kind::SwivelAngle, 0, 9, {-0.3}},
                    {Kind::Place, 0, 9, {0.5, 0.1, 0.7}},    {Kind::LeaningHead, 0, 9, {0.05, -0.08}},
                    {Kind::AxesNotSquare, 0, 9, {0.1}},      {Kind::AxesApart, 0, 9, {1.5}},
                    {Kind::Place, 0, 9, {0.3, 0.4, 0.6}},    {Kind::SwivelAngle, 0, 9, {0.3}},
                    {Kind::OtherTip, 0, 9, {2.0, 1.0, 3.0}}, {Kind::TiltAngle, 5, 9, {0.4}}};
    for (const std::size_t drifting : {6u, 7u}) model.errors[drifting].drift = diagnosis::fit::Drift{2.0, 5};
    const std::size_t unknowns = model.Unknowns();
    EXPECT_EQ(7u + 1 + 1 + 3 + 2 + 1 + 1 + 3 + 1 + 3 + 1, unknowns);
    const captures::CapturedPoint point{40.0, 70.0, {}};
    std::vector<model::Vector3> derivatives(unknowns);
    model.Derivatives(point, 2, derivatives);
    // The error of a central difference is a sixth of the squared step times the third derivative, which is some
    // hundreds.
    constexpr double step = 1e-4;
    constexpr double tolerance = 1e-6;
    for (std::size_t i = 0; i < unknowns; ++i) {
        std::vector<double> change(unknowns, 0.0);
        change[i] = step;
        const model::Vector3 after = model.Stepped(change).Position(point, 2);
        change[i] = -step;
        const model::Vector3 before = model.Stepped(change).Position(point, 2);
        const model::Vector3 slope = (1.0 / (2.0 * step)) * (after - before);
        EXPECT_NEAR(0.0, Length(slope - derivatives[i]), tolerance) << "unknown " << i;
    }
    EXPECT_EQ(0.0, Length(derivatives.back())) << "the last error does not concern this point";
}

} // namespace

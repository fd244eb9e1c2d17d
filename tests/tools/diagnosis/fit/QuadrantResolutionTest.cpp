#include "tools/diagnosis/fit/QuadrantResolution.h"

#include "tests/tools/diagnosis/Captures.h"
#include "tools/model/Angles.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

diagnosis::fit::HeadModel ModelOf(double mounting, const model::Vector3& tip) {
    diagnosis::fit::HeadModel model;
    model.mounting = model::ToRadians(mounting);
    model.tip = tip;
    return model;
}

const std::vector<double> allTilts{0, 15, 30, 45, 60, 75, 90};
const model::Vector3 straight{0.0, 0.0, -180.0};

TEST(RotationByQuadrant, IsWhatTheComponentFinds) {
    // These mounting angles avoid points exactly 10 mm beyond the head centre: there rounding would decide.
    for (const model::Vector3& tip :
         {straight, model::Vector3{-30.0, 60.0, -140.0}, model::Vector3{25.0, 0.0, -90.0}, model::Vector3{1, 2, -50}}) {
        for (const double mounting : {-170.0, -93.0, -47.0, -20.0, -3.0, -0.5, 0.7, 4.0, 33.0, 88.0, 91.0, 140.0}) {
            for (const double b : {-180.0, -135.0, -90.0, -45.0, 0.0, 30.0, 45.0, 90.0, 135.0}) {
                SimulatedHead head;
                head.mountingAngle = mounting;
                head.stylus = {tip.x, tip.y, tip.z};
                const double found = UnderTest(head.ASet(b), head.BSet(75)).rotation;
                const double byQuadrant = diagnosis::fit::RotationByQuadrant(ModelOf(mounting, tip), allTilts, b);
                EXPECT_NEAR(0.0, model::Wrapped(found - byQuadrant), 1e-6)
                    << mounting << " at B " << b << " tip " << tip.x;
            }
        }
    }
}

TEST(RotationByQuadrant, TakesTheWrongSideNearTheEdgeOfAQuadrant) {
    // asin(10 / 180) is 3.18 degrees. At a mounting angle between -3.18 and 0 no point is more than 10 mm beyond the
    // head centre in X: the rotation is then taken to be positive.
    EXPECT_NEAR(3.0, diagnosis::fit::RotationByQuadrant(ModelOf(-3.0, straight), allTilts, 0.0), 1e-9);
    EXPECT_FALSE(diagnosis::fit::QuadrantIsRight(ModelOf(-3.0, straight), allTilts, 0.0));
    EXPECT_TRUE(diagnosis::fit::QuadrantIsRight(ModelOf(-3.3, straight), allTilts, 0.0));
    EXPECT_TRUE(diagnosis::fit::QuadrantIsRight(ModelOf(3.0, straight), allTilts, 0.0));
    EXPECT_TRUE(diagnosis::fit::QuadrantIsRight(ModelOf(-3.0, straight), allTilts, 45.0));
}

TEST(SwivelWithSafeQuadrant, Is45WhenThatIsFarFromAnEdge) {
    for (const double mounting : {-30.0, -3.0, 0.0, 20.0, 87.0, 180.0}) {
        EXPECT_EQ(45.0, diagnosis::fit::SwivelWithSafeQuadrant(ModelOf(mounting, straight), allTilts)) << mounting;
    }
}

TEST(SwivelWithSafeQuadrant, IsAnotherBWhenTheUsualOnesAreNearAnEdge) {
    const diagnosis::fit::HeadModel turned = ModelOf(45.0, straight);
    const auto swivel = diagnosis::fit::SwivelWithSafeQuadrant(turned, allTilts);
    ASSERT_TRUE(swivel.has_value());
    for (const double off : {-5.0, 5.0})
        EXPECT_TRUE(diagnosis::fit::QuadrantIsRight(ModelOf(45.0 + off, straight), allTilts, *swivel));
}

TEST(SwivelWithSafeQuadrant, IsMissingForAHeadThatTiltsInTheOtherDirection) {
    EXPECT_FALSE(diagnosis::fit::SwivelWithSafeQuadrant(ModelOf(0.0, straight), std::vector{0.0, -30.0, -60.0, -90.0})
                     .has_value());
}

TEST(WithStraightStylus, HasTheSameLength) {
    const diagnosis::fit::HeadModel model = diagnosis::fit::WithStraightStylus(ModelOf(0.0, {-30.0, 60.0, -60.0}));
    EXPECT_EQ(0.0, model.tip.x);
    EXPECT_EQ(0.0, model.tip.y);
    EXPECT_DOUBLE_EQ(-90.0, model.tip.z);
}

} // namespace

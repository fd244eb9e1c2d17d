#include "maths/ElementaryFunctions.h"
#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"

#include <cmath>

namespace {

using ToRadians = double (*)(double);

/// The component's conversion of head angles: pi shortened to 14 decimals, multiplied first. Both are required.
double ShortPiMultipliedFirst(double degrees) { return degrees * 3.14159265358979 / 180.0; }
double ShortPiDividedFirst(double degrees) { return degrees / 180.0 * 3.14159265358979; }
double ShortPiOneFactor(double degrees) { return degrees * (3.14159265358979 / 180.0); }
double FullPi(double degrees) { return degrees * 3.14159265358979323846 / 180.0; }

/// A unit quaternion with the operations that the head needs, written a second time in the same order. The sine is the
/// component's own, because C libraries differ in the last bit.
struct Turn {
    double w, x, y, z;

    static Turn About(const Triple& axis, double radians) {
        const double s = qmv40::Sine(0.5 * radians);
        return {qmv40::Cosine(0.5 * radians), axis[0] * s, axis[1] * s, axis[2] * s};
    }
    Turn After(const Turn& b) const {
        return {w * b.w - x * b.x - y * b.y - z * b.z, w * b.x + x * b.w + y * b.z - z * b.y,
                w * b.y - x * b.z + y * b.w + z * b.x, w * b.z + x * b.y - y * b.x + z * b.w};
    }
    Triple Of(const Triple& v) const {
        const double rows[3][3] = {{x * x - y * y - z * z + w * w, 2.0 * (x * y - z * w), 2.0 * (x * z + y * w)},
                                   {2.0 * (x * y + z * w), -x * x + y * y - z * z + w * w, 2.0 * (y * z - x * w)},
                                   {2.0 * (x * z - y * w), 2.0 * (y * z + x * w), -x * x - y * y + z * z + w * w}};
        Triple result{};
        for (std::size_t i = 0; i < 3; ++i) result[i] = rows[i][0] * v[0] + rows[i][1] * v[1] + rows[i][2] * v[2];
        return result;
    }
};

Triple ExpectedApproach(const RoundThePole& head, double a, double b, double distance, ToRadians radians) {
    const Turn turn =
        Turn::About(TripleOf(head.BAxis()), radians(b)).After(Turn::About(TripleOf(head.AAxis()), radians(a)));
    const Triple direction = TripleOf(head.ApproachDirection());
    const Triple cup = TripleOf(head.DriveCupOffset());
    const Triple reach =
        turn.Of({direction[0] * distance + cup[0], direction[1] * distance + cup[1], direction[2] * distance + cup[2]});
    const Triple centre = TripleOf(head.HeadCentre());
    return {centre[0] - reach[0], centre[1] - reach[1], centre[2] - reach[2]};
}

Triple ExpectedEngagement(const RoundThePole& head, double a, double b, ToRadians radians) {
    const Turn turn =
        Turn::About(TripleOf(head.BAxis()), radians(b)).After(Turn::About(TripleOf(head.AAxis()), radians(a)));
    const Triple reach = turn.Of(TripleOf(head.DriveCupOffset()));
    const Triple centre = TripleOf(head.HeadCentre());
    return {centre[0] - reach[0], centre[1] - reach[1], centre[2] - reach[2]};
}

Triple ExpectedAAxis(const RoundThePole& head, double b, ToRadians radians) {
    return Turn::About(TripleOf(head.BAxis()), radians(b)).Of(TripleOf(head.AAxis()));
}

class Approach : public HeadTest {
protected:
    Triple ApproachAt(double a, double b, double distance) const {
        return Answer([&](CMaVector& out) { head.ApproachPosition(a, b, distance, out); });
    }
    Triple EngagementAt(double a, double b) const {
        return Answer([&](CMaVector& out) { head.EngagementPosition(a, b, out); });
    }
    Triple AAxisAt(double b) const {
        return Answer([&](CMaVector& out) { head.RotatedAAxis(b, out); });
    }
    /// Runs `check` for every position of the head.
    template <class Check> void AtEveryPosition(Check&& check) const {
        for (int a = 0; a <= 90; a += 15)
            for (int b = -180; b <= 180; b += 15) check(static_cast<double>(a), static_cast<double>(b));
    }

    RoundThePole head;
};

TEST_F(Approach, OfAHeadThatIsNotTurnedIsTheHeadCentreMinusTheOffsets) {
    SavedHead{.headCentre = {100.0, 200.0, 300.0}, .rotation = 0.0}.LoadInto(head);
    EXPECT_EQ(EngagementAt(0.0, 0.0), (Triple{100.0 + 6.95, 200.0 - 24.0, 300.0 + 11.5}));
    EXPECT_EQ(ApproachAt(0.0, 0.0, 10.0), (Triple{100.0 + 6.95, 200.0 - 34.0, 300.0 + 11.5}));
}

TEST_F(Approach, AgreesWithRotationsComputedByHand) {
    // Right-handed about the A axis (-1, 0, 0), then about the B axis (0, 0, 1). The drive cup is at (-6.95, 24,
    // -11.5).
    struct Case {
        double a;
        double b;
        Triple engagement;
        const char* why;
    };
    for (const Case& c : {Case{0.0, 90.0, {24.0, 6.95, 11.5}, "cup turned to (-24, -6.95, -11.5)"},
                          Case{0.0, 180.0, {-6.95, 24.0, 11.5}, "cup turned to (6.95, -24, -11.5)"},
                          Case{90.0, 0.0, {6.95, 11.5, 24.0}, "cup tilted to (-6.95, -11.5, -24)"},
                          Case{90.0, 90.0, {-11.5, 6.95, 24.0}, "tilted, then turned: (11.5, -6.95, -24)"}})
        EXPECT_TRUE(AreNear(EngagementAt(c.a, c.b), c.engagement, 1e-12)) << c.why;
    EXPECT_TRUE(AreNear(ApproachAt(90.0, 0.0, 10.0), {6.95, 11.5, 34.0}, 1e-12)) << "approach turned to (0, 0, -1)";
}

TEST_F(Approach, AtDistance0IsTheEngagementPosition) {
    SavedHead{.headCentre = {312.5, -48.25, -610.0}, .rotation = 30.0}.LoadInto(head);
    AtEveryPosition(
        [this](double a, double b) { EXPECT_EQ(ApproachAt(a, b, 0.0), EngagementAt(a, b)) << a << ' ' << b; });
    for (const double odd : {7.3, -200.0, 1e6}) EXPECT_EQ(ApproachAt(odd, -odd, 0.0), EngagementAt(odd, -odd));
}

TEST_F(Approach, IsTheGivenDistanceBeforeEngagement) {
    SavedHead{.headCentre = {312.5, -48.25, -610.0}, .rotation = 30.0}.LoadInto(head);
    AtEveryPosition([this](double a, double b) {
        EXPECT_NEAR(Distance(ApproachAt(a, b, 10.0), EngagementAt(a, b)), 10.0, 1e-12) << a << ' ' << b;
    });
}

TEST_F(Approach, IsTheSameAtBothEndsOfB) {
    SavedHead{.headCentre = {312.5, -48.25, -610.0}, .rotation = 30.0}.LoadInto(head);
    for (int a = 0; a <= 90; a += 15) {
        EXPECT_TRUE(AreNear(ApproachAt(a, 180.0, 10.0), ApproachAt(a, -180.0, 10.0), 1e-12));
        EXPECT_TRUE(AreNear(EngagementAt(a, 180.0), EngagementAt(a, -180.0), 1e-12));
    }
    EXPECT_TRUE(AreNear(AAxisAt(180.0), AAxisAt(-180.0), 2e-14));
}

TEST_F(Approach, TurnsTheAAxisWithB) {
    EXPECT_TRUE(AreNear(AAxisAt(90.0), {0.0, -1.0, 0.0}, 5e-15));
    EXPECT_TRUE(AreNear(AAxisAt(-90.0), {0.0, 1.0, 0.0}, 5e-15));
    EXPECT_EQ(AAxisAt(0.0), (Triple{-1.0, 0.0, 0.0}));
}

TEST_F(Approach, DoesNotChangeTheHead) {
    SavedHead{.headCentre = {1.0, 2.0, 3.0}, .rotation = 30.0}.LoadInto(head);
    const Triple axis = TripleOf(head.AAxis());
    const Triple cup = TripleOf(head.DriveCupOffset());
    const Triple direction = TripleOf(head.ApproachDirection());
    ApproachAt(45.0, 90.0, 10.0);
    EngagementAt(45.0, 90.0);
    AAxisAt(90.0);
    EXPECT_EQ(TripleOf(head.AAxis()), axis);
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), cup);
    EXPECT_EQ(TripleOf(head.ApproachDirection()), direction);
}

/// The order of operations, the shortened pi and the multiplication before the division determine every bit of the
/// three results. They are required: plans must be the same on every machine.
TEST_F(Approach, ConvertsAnglesWithTheShortenedPiMultipliedFirst) {
    for (const double rotation : {0.0, 30.0, -12.34}) {
        SavedHead{.rotation = rotation}.LoadInto(head);
        int fullPiShows = 0;
        int dividedFirstShows = 0;
        int oneFactorShows = 0;
        const auto check = [&](double a, double b) {
            const Triple approach = ExpectedApproach(head, a, b, 10.0, ShortPiMultipliedFirst);
            EXPECT_EQ(ApproachAt(a, b, 10.0), approach) << a << ' ' << b;
            EXPECT_EQ(EngagementAt(a, b), ExpectedEngagement(head, a, b, ShortPiMultipliedFirst)) << a << ' ' << b;
            EXPECT_EQ(AAxisAt(b), ExpectedAAxis(head, b, ShortPiMultipliedFirst)) << b;
            fullPiShows += approach != ExpectedApproach(head, a, b, 10.0, FullPi);
            dividedFirstShows += approach != ExpectedApproach(head, a, b, 10.0, ShortPiDividedFirst);
            oneFactorShows += approach != ExpectedApproach(head, a, b, 10.0, ShortPiOneFactor);
        };
        AtEveryPosition(check);
        for (int b = -180; b <= 180; ++b) check(0.25 * (b + 180), b);
        // The inputs must distinguish the formulas; otherwise the comparisons above would prove nothing.
        EXPECT_GT(fullPiShows, 100);
        EXPECT_GT(dividedFirstShows, 10);
        EXPECT_GT(oneFactorShows, 10);
    }
}

TEST_F(Approach, DependsOnTheShortenedPiInItsLastDigits) {
    // cos(90 degrees) is 6e-17 with the full pi and 1.6e-15 with the shortened one.
    const double turned = AAxisAt(90.0)[0];
    EXPECT_EQ(turned, ExpectedAAxis(head, 90.0, ShortPiMultipliedFirst)[0]);
    EXPECT_GT(std::abs(turned), 1e-15);
}

TEST_F(Approach, AcceptsAnyAngleAndNotANumber) {
    EXPECT_TRUE(AreNear(EngagementAt(360.0, -720.0), EngagementAt(0.0, 0.0), 1e-12));
    const Triple nowhere = EngagementAt(std::nan(""), 0.0);
    EXPECT_TRUE(std::isnan(nowhere.x) && std::isnan(nowhere.y) && std::isnan(nowhere.z));
}

} // namespace

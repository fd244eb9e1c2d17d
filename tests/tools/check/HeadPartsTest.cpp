#include "tools/check/HeadParts.h"
#include "tests/support/IdealHead.h"
#include "tests/tools/check/obstacles/SampledClearance.h"
#include "tools/check/obstacles/Mesh.h"

#include <gtest/gtest.h>
#include <numbers>
#include <random>

using namespace qmv40;

namespace {

using check::obstacles::Axis;
using model::Vector3;

/// Random moves: straight moves, arcs that push a lever, and arcs that turn the head.
class RandomMoves {
public:
    explicit RandomMoves(std::uint64_t seed) : random(seed) {}

    /// A vector with coordinates between -reach and reach.
    Vector3 VectorWithin(double reach) {
        return {Between(-reach, reach), Between(-reach, reach), Between(-reach, reach)};
    }
    double Between(double least, double most) { return std::uniform_real_distribution<double>(least, most)(random); }

    motion::ExecutedMove Next(const model::HeadModel& head) {
        const Vector3 start = head.PoleSphere() + VectorWithin(60.0);
        const model::HeadAngles before = RandomAngles();
        motion::HeadState state{before, model::LeverState::Locked, false, {}};
        switch (std::uniform_int_distribution<int>(0, 2)(random)) {
        case 0:
            return {plans::MoveId::ApproachPeg, model::Path::Straight(start, start + VectorWithin(90.0)), state, state,
                    0.0};
        case 1:
            state.touchedBall = Between(0.0, 1.0) < 0.5 ? model::LeverSide::Plus : model::LeverSide::Minus;
            return {plans::MoveId::UnLock, RandomArc(start), state, state, 0.0};
        default: {
            motion::HeadState after = state;
            after.angles = RandomAngles();
            return {plans::MoveId::MoveToBPosition, RandomArc(start), state, after, 0.0};
        }
        }
    }

private:
    model::HeadAngles RandomAngles() { return {Between(0.0, 90.0), Between(-180.0, 180.0)}; }
    model::Path RandomArc(const Vector3& start) {
        return model::Path::Arc(start, start + VectorWithin(40.0), model::Unit(VectorWithin(1.0)),
                                Between(-200.0, 200.0));
    }

    std::mt19937_64 random;
};

/// The second derivative of the ends of the axis with respect to the fraction, from finite differences; the larger one.
double MeasuredBend(const check::obstacles::MovingPart& part, double fraction) {
    constexpr double half = 0.01;
    const auto bend = [](const Vector3& before, const Vector3& here, const Vector3& after) {
        return model::Length(before - 2.0 * here + after) / (half * half);
    };
    const Axis before = part.at(fraction - half);
    const Axis here = part.at(fraction);
    const Axis after = part.at(fraction + half);
    return std::max(bend(before.from, here.from, after.from), bend(before.to, here.to, after.to));
}

check::PartSizes WithStylus() {
    check::PartSizes sizes;
    sizes.stylus = check::Stylus{150.0};
    return sizes;
}

const check::PartSizes withStylus = WithStylus();

TEST(HeadParts, BendNoMoreThanTheirBound) {
    const std::uint64_t seed = std::random_device{}();
    RandomMoves random(seed);
    const model::HeadModel head = IdealHead(17.0, {100.0, -50.0, 30.0});
    // Far above the rounding of a few 1e-13 mm, divided by the square of the step 0.01.
    constexpr double tolerance = 1e-7;
    for (int i = 0; i < 300; ++i) {
        const motion::ExecutedMove move = random.Next(head);
        const std::vector<check::PartInMove> parts = PartsOf(move, head, withStylus);
        ASSERT_EQ(7u, parts.size());
        for (std::size_t part = 0; part < parts.size(); ++part) {
            for (const double fraction : {0.02, 0.3, 0.5, 0.77, 0.98}) {
                ASSERT_LE(MeasuredBend(parts[part].moving, fraction), parts[part].moving.bend + tolerance)
                    << check::NamesOfParts(withStylus)[part] << ", seed " << seed;
            }
        }
    }
}

TEST(HeadParts, NeverComeCloserThanTheirProvenClearance) {
    const std::uint64_t seed = std::random_device{}();
    RandomMoves random(seed);
    const model::HeadModel head = IdealHead(-8.0);
    std::vector<check::obstacles::Triangle> surface;
    for (int i = 0; i < 40; ++i) {
        const Vector3 corner = random.VectorWithin(200.0);
        surface.push_back({corner, corner + random.VectorWithin(30.0), corner + random.VectorWithin(30.0)});
    }
    const check::obstacles::Mesh triangles(surface);
    const check::obstacles::Table table(-150.0);
    constexpr int samples = 1000;
    // The speed of a part, per move: a stylus of 150 mm turns by 90 and 360 degrees at most (7.9 rad together), and the
    // machine runs an arc with a radius of 70 mm by 200 degrees (3.5 rad).
    constexpr double fastest = 150.0 * 7.9 + 70.0 * 3.5; // mm for the whole move
    for (int i = 0; i < 40; ++i) {
        const motion::ExecutedMove move = random.Next(head);
        const std::vector<check::PartInMove> parts = PartsOf(move, head, withStylus);
        for (std::size_t part = 0; part < parts.size(); ++part) {
            for (const check::obstacles::Solid* const solid :
                 std::initializer_list<const check::obstacles::Solid*>{&triangles, &table}) {
                const double bound = check::obstacles::ClearanceOf(parts[part].moving, *solid);
                const double sampled = SampledClearance(parts[part].moving, *solid, samples);
                ASSERT_LE(bound, sampled) << check::NamesOfParts(withStylus)[part] << ", seed " << seed;
                ASSERT_GE(bound, sampled - check::obstacles::clearanceTolerance - fastest / samples)
                    << check::NamesOfParts(withStylus)[part] << ", seed " << seed;
            }
        }
    }
}

TEST(HeadParts, KeepAPushedLeverOnThePoleSphere) {
    const model::HeadModel head = IdealHead(0.0, {100.0, -50.0, 30.0});
    const motion::HeadState touched{{0.0, 0.0}, model::LeverState::Locked, false, model::LeverSide::Plus};
    const Vector3 start = head.LeverBall(model::LeverSide::Plus, model::LeverState::Locked);
    const model::Turning push = head.LeverPush(model::LeverSide::Plus, model::LeverState::Locked);
    const model::Path arc = model::Path::Arc(start, push.centre, push.axis, push.degrees);
    const motion::ExecutedMove move{plans::MoveId::UnLock, arc, touched, touched, 0.0};
    const std::vector<check::PartInMove> parts = check::PartsOf(move, head, check::PartSizes{});
    for (const double fraction : {0.0, 0.25, 0.5, 1.0}) {
        const Axis pushed = parts[3].moving.at(fraction);
        EXPECT_TRUE(IsAt(head.PoleSphere(), pushed.to, rounding)) << fraction;
        EXPECT_TRUE(IsAt(pushed.from - arc.At(fraction), parts[3].moving.at(0.0).from - start, rounding))
            << "its pivot moves with the machine";
        const Axis other = parts[4].moving.at(fraction);
        EXPECT_TRUE(IsAt(other.to - arc.At(fraction), parts[4].moving.at(0.0).to - start, rounding))
            << "the other lever moves with the machine";
    }
}

} // namespace

#include "tests/tools/diagnosis/HumanMistakes.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>
#include <functional>

using paper::CapturedLine;
using paper::Measurement;
using paper::Measurements;
using qmv40::model::Vector3;

namespace {

using Lines = std::vector<CapturedLine>;

Lines& AnyLines(PaperCapture& c) { return c.Either() ? c.aLines : c.bLines; }
CapturedLine& AnyLine(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    return lines[c.Below(lines.size())];
}
template <typename Change> void EachLine(PaperCapture& c, Change&& change) {
    for (Lines* const lines : {&c.aLines, &c.bLines}) std::ranges::for_each(*lines, change);
}
double Normal(PaperCapture& c, double deviation) {
    return std::normal_distribution<double>(0.0, deviation)(c.generator);
}
Vector3 NormalVector(PaperCapture& c, double deviation) {
    return {Normal(c, deviation), Normal(c, deviation), Normal(c, deviation)};
}
void FourPoints(PaperCapture& c) { c.SetPositions(45, {0, 30, 60, 90}, 90.0, {-180.0, -90.0, 0.0, 90.0}); }

// Faultless

template <bool ofA> void UnevenNoise(PaperCapture& c) {
    const double more = c.OneOf({0.02, 0.01, 0.005}), length = c.Between(100, 300);
    c.noise = c.Between(0.0005, 0.001);
    c.All([length](Measurement& each) { each.tip.z = -length; });
    for (Measurement& each : ofA ? c.aSet : c.bSet) each.shift = each.shift + NormalVector(c, more);
}
void LinesInAnyOrder(PaperCapture& c) {
    for (Lines* const lines : {&c.aLines, &c.bLines}) std::ranges::shuffle(*lines, c.generator);
}
void BFromZeroOn(PaperCapture& c) {
    for (Measurement& each : c.bSet) each.writtenB += each.writtenB < 0.0 ? 360.0 : 0.0;
}
void LongStylusFarAway(PaperCapture& c) {
    const Vector3 far{c.EitherSign(2000, 5000), c.EitherSign(2000, 5000), c.EitherSign(1000, 3000)};
    const double length = c.Between(300, 500);
    c.All([&](Measurement& each) { each.sphere = far, each.tip.z = -length; });
}
void TipALittleAside(PaperCapture& c) {
    const double x = c.EitherSign(0.5, 3.0), y = c.EitherSign(0.5, 3.0);
    c.All([=](Measurement& each) { each.tip.x = x, each.tip.y = y; });
}
void UniformNoise(PaperCapture& c) {
    std::uniform_real_distribution<double> any(-0.008, 0.008);
    c.All([&](Measurement& each) {
        each.shift = each.shift + Vector3{any(c.generator), any(c.generator), any(c.generator)};
    });
}
void RoundedToAHundredth(PaperCapture& c) {
    EachLine(c, [](CapturedLine& line) {
        for (std::size_t i = 0; i < 3; ++i) line.position[i] = std::round(line.position[i] * 100.0) / 100.0;
    });
}
void NoisyInZ(PaperCapture& c) {
    c.noise = 0.001;
    c.All([&](Measurement& each) { each.shift.z += Normal(c, 0.006); });
}

// Written

void WrongDigit(PaperCapture& c) {
    double& coordinate = AnyLine(c).position[c.Below(3)];
    coordinate += c.EitherSign(1.0, 1.0) * std::floor(c.Between(1, 10)) * std::pow(10.0, c.OneOf({-2, -1, 0, 1, 2}));
}
void WrittenBesideAnIndexPosition(PaperCapture& c) {
    const bool ofA = c.Either();
    Measurements& set = ofA ? c.aSet : c.bSet;
    Measurement& each = set[c.Below(set.size())];
    (ofA ? each.writtenA : each.writtenB) += c.OneOf({1.0, -9.0});
}
void DigitsExchanged(PaperCapture& c) {
    double& coordinate = AnyLine(c).position[c.Below(3)];
    const double place = c.OneOf({0.01, 0.1, 1.0, 10.0});
    const auto digit = [&](double of) { return std::fmod(std::floor(std::abs(coordinate) / of), 10.0); };
    const double high = digit(10.0 * place), low = digit(place);
    coordinate += std::copysign((low - high) * 9.0 * place, coordinate);
}
void CoordinateOfTheLineBefore(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t i = 1 + c.Below(lines.size() - 1), axis = c.Below(3);
    lines[i].position[axis] = lines[i - 1].position[axis];
}
void CoordinatesOfALineExchanged(PaperCapture& c) {
    CapturedLine& line = AnyLine(c);
    const std::size_t axis = c.Below(3);
    std::swap(line.position[axis], line.position[(axis + 1) % 3]);
}
void LinesExchanged(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t i = c.Below(lines.size() - 1);
    std::swap(lines[i].position, lines[i + 1].position);
}
void DecimalPointOfALine(PaperCapture& c) {
    CapturedLine& line = AnyLine(c);
    line.position = c.OneOf({0.1, 10.0, 0.01}) * line.position;
}
void SignsOfAColumnLost(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t axis = c.Below(3);
    for (CapturedLine& line : lines) line.position[axis] = std::abs(line.position[axis]);
}
void OneColumnInInches(PaperCapture& c) {
    const std::size_t axis = c.Below(3);
    EachLine(c, [axis](CapturedLine& line) { line.position[axis] /= 25.4; });
}
void AnglesInRadians(PaperCapture& c) {
    EachLine(c, [](CapturedLine& line) {
        line.a = qmv40::model::ToRadians(line.a);
        line.b = qmv40::model::ToRadians(line.b);
    });
}
void AnglesInGon(PaperCapture& c) {
    EachLine(c, [](CapturedLine& line) { line.a /= 0.9, line.b /= 0.9; });
}
void AnglesExchanged(PaperCapture& c) {
    EachLine(c, [](CapturedLine& line) { std::swap(line.a, line.b); });
}
void SignsOfBLost(PaperCapture& c) {
    for (CapturedLine& line : c.bLines) line.b = std::abs(line.b);
}
void SignOfABLost(PaperCapture& c) {
    CapturedLine& line = c.bLines[c.Below(c.bLines.size())];
    line.b = -line.b;
}
void PointOfTheOtherSet(PaperCapture& c) {
    const CapturedLine strange = c.bLines[c.Below(c.bLines.size())];
    CapturedLine& line = c.aLines[c.Below(c.aLines.size())];
    line.position = strange.position;
}
void SetsSwapped(PaperCapture& c) { std::swap(c.aLines, c.bLines); }
void SetGivenTwice(PaperCapture& c) { c.bLines = c.aLines; }
void StepsOfTenWritten(PaperCapture& c) {
    EachLine(c, [](CapturedLine& line) { line.a = line.a / 1.5; });
}
void AllLinesShifted(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t by = 1 + c.Below(lines.size() - 1);
    Lines turned = lines;
    for (std::size_t i = 0; i < lines.size(); ++i) turned[i].position = lines[(i + by) % lines.size()].position;
    lines = turned;
}
void FrozenReadout(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t first = c.Below(lines.size() - 1);
    for (std::size_t i = first + 1; i < std::min(first + 2 + c.Below(4), lines.size()); ++i) {
        lines[i].position = lines[first].position;
    }
}
void FrozenCoordinate(PaperCapture& c) {
    Lines& lines = AnyLines(c);
    const std::size_t first = c.Below(lines.size() - 1), axis = c.Below(3);
    for (std::size_t i = first + 1; i < lines.size(); ++i) lines[i].position[axis] = lines[first].position[axis];
}

// Measured

void LooseSphere(PaperCapture& c) {
    const Vector3 apart = c.Vector(0.05, 1.0);
    c.All([&](Measurement& each) {
        if (c.Either()) each.sphere = each.sphere + apart;
    });
}
void MovedAndPutBack(PaperCapture& c) {
    const std::size_t from = c.WithinASet();
    const Vector3 move = c.Vector(0.1, 3.0);
    c.FromOn(from, [&](Measurement& each) { each.sphere = each.sphere + move; });
    c.FromOn(from + 2 + c.Below(4), [&](Measurement& each) { each.sphere = each.sphere - move; });
}
void MovedTwice(PaperCapture& c) {
    for (int i = 0; i < 2; ++i) {
        const Vector3 move = c.Vector(0.1, 2.0);
        c.FromOn(c.WithinASet(), [&](Measurement& each) { each.sphere = each.sphere + move; });
    }
}
void Settles(PaperCapture& c) {
    const Vector3 whole = c.Vector(0.1, 1.5);
    double left = 1.0;
    const double rate = c.Between(0.6, 0.95);
    c.All([&](Measurement& each) { each.sphere = each.sphere + (left *= rate) * whole; });
}
void RandomWalk(PaperCapture& c) {
    Vector3 off;
    const double step = c.Between(0.002, 0.05);
    c.All([&](Measurement& each) { each.sphere = each.sphere + (off = off + NormalVector(c, step)); });
}
void CreepsOnItsMount(PaperCapture& c) {
    double turned = 0.0;
    const double step = c.EitherSign(0.005, 0.1);
    c.All([&](Measurement& each) { each.mounting += (turned += step); });
}
void CreepsAside(PaperCapture& c) {
    double lean = 0.0;
    const double step = c.EitherSign(0.005, 0.1);
    c.All([&](Measurement& each) { each.leanX += (lean += step); });
}
void UnscrewsItself(PaperCapture& c) {
    double longer = 0.0;
    const double step = c.Between(0.01, 0.2);
    c.All([&](Measurement& each) { each.tip.z -= (longer += step); });
}
/// Changes each measurement by the part of a movement that is still to come before it comes to rest.
template <typename Change> void ComesToRest(PaperCapture& c, Change&& change) {
    const double rate = c.Between(0.6, 0.95);
    double left = 1.0;
    c.All([&](Measurement& each) { change(each, left *= rate); });
}
void SettlesOnItsMount(PaperCapture& c) {
    const double whole = c.EitherSign(0.05, 2.0);
    ComesToRest(c, [whole](Measurement& each, double left) { each.mounting += left * whole; });
}
void StylusComesToRest(PaperCapture& c) {
    const Vector3 whole = c.Vector(0.1, 2.0);
    ComesToRest(c, [&](Measurement& each, double left) { each.tip = each.tip + left * whole; });
}
void HeavyTails(PaperCapture& c) {
    std::student_t_distribution<double> heavy(2.0);
    const double size = c.Between(0.002, 0.02);
    c.All([&](Measurement& each) {
        each.shift = each.shift + size * Vector3{heavy(c.generator), heavy(c.generator), heavy(c.generator)};
    });
}
void OneAxisIsNoisy(PaperCapture& c) {
    const std::size_t axis = c.Below(3);
    const double size = c.Between(0.01, 0.3);
    c.All([&](Measurement& each) { each.shift[axis] += Normal(c, size); });
}
void RoundedCoarsely(PaperCapture& c) {
    const double step = c.OneOf({0.05, 0.1, 0.5, 1.0});
    EachLine(c, [step](CapturedLine& line) {
        for (std::size_t i = 0; i < 3; ++i) line.position[i] = std::round(line.position[i] / step) * step;
    });
}
void StylusBendsUnderItsWeight(PaperCapture& c) {
    const double most = c.Between(0.02, 1.0);
    c.All([most](Measurement& each) { each.shift.z += most * std::sin(qmv40::model::ToRadians(each.a)); });
}
void IndexesBadly(PaperCapture& c) {
    const double size = c.Between(0.01, 0.3);
    c.All([&](Measurement& each) { each.a += Normal(c, size), each.b += Normal(c, size); });
}
void PlayInA(PaperCapture& c) {
    const double play = c.EitherSign(0.02, 0.5);
    for (Measurement& each : c.aSet) each.a += each.a > 40.0 ? play : 0.0;
}
void LockedNowAndThen(PaperCapture& c) {
    c.All([&](Measurement& each) {
        if (c.Either()) each.shift.z += 1.5;
    });
}
void EverySecondLocked(PaperCapture& c) {
    Measurements& set = c.AnySet();
    for (std::size_t i = c.Below(2); i < set.size(); i += 2) set[i].shift.z += 1.5;
}
void TwoLocked(PaperCapture& c) {
    for (int i = 0; i < 2; ++i) {
        Measurements& set = c.AnySet();
        set[c.Below(set.size())].shift.z = 0.0; // an assignment, because one point can be drawn twice
    }
}
/// A part's frame is in force: the readings are turned and shifted.
void FrameInForceInOneSet(PaperCapture& c) {
    const qmv40::model::Rotation turn(qmv40::model::ToRadians(c.EitherSign(0.05, 5.0)));
    const Vector3 shift = c.OneOf({1.0, 0.0}) * c.Vector(1.0, 50.0);
    for (CapturedLine& line : AnyLines(c)) line.position = qmv40::model::AboutZ(turn, line.position) + shift;
}
void SetsOfTwoDays(PaperCapture& c) {
    const Vector3 moved = c.Vector(0.2, 30.0);
    const double turned = c.EitherSign(0.1, 3.0), longer = c.EitherSign(0.1, 5.0);
    c.FromOn(c.Between(), [&](Measurement& each) {
        each.sphere = each.sphere + moved;
        each.mounting += turned;
        each.tip.z -= longer;
    });
}
void TurnedAndMoved(PaperCapture& c) {
    const Vector3 moved = c.Vector(0.1, 2.0);
    const double turned = c.EitherSign(0.1, 2.0);
    c.FromOn(c.WithinASet(), [&](Measurement& each) { each.sphere = each.sphere + moved, each.mounting += turned; });
}
void BadHead(PaperCapture& c) {
    const double lean = c.EitherSign(0.0, 1.0), square = c.EitherSign(0.0, 1.0), apart = c.EitherSign(0.0, 0.5);
    c.All([=](Measurement& each) { each.leanX = lean, each.squareness = square, each.axisOffset = apart; });
}
void SmallCircleOfB(PaperCapture& c) {
    const double tilt = c.OneOf({15.0, 30.0});
    for (Measurement& each : c.bSet) each.a = each.writtenA = tilt;
}
void ShortArcsBoth(PaperCapture& c) {
    for (std::size_t i = 0; i < c.aSet.size(); ++i)
        c.aSet[i].a = c.aSet[i].writtenA = 45.0 + 3.0 * static_cast<double>(i % 8);
    for (std::size_t i = 0; i < c.bSet.size(); ++i)
        c.bSet[i].b = c.bSet[i].writtenB = 10.0 * static_cast<double>(i % 9);
}
void FewNoisyPoints(PaperCapture& c) {
    FourPoints(c);
    c.noise = c.Between(0.005, 0.1);
}
void FewPointsShortArc(PaperCapture& c) {
    const double first = c.Between(0, 45), arc = c.Between(10, 45);
    c.SetPositions(45, {first, first + arc / 3, first + arc / 1.5, first + arc}, 90.0, {-180.0, -90.0, 0.0, 90.0});
}

// Any mistake of the common ones, in other circumstances

const HumanKind& AnyCommonMistake(PaperCapture& c) {
    const auto& kinds = CommonMistakes();
    for (;;) {
        const HumanKind& kind = kinds[c.Below(kinds.size())];
        if (!kind.isClean) return kind;
    }
}
void MakeOne(PaperCapture& c) {
    const HumanKind& kind = AnyCommonMistake(c);
    if (kind.circumstances != nullptr) kind.circumstances(c);
    if (kind.readings != nullptr) c.later.push_back(kind.readings);
    c.made += std::string(" (") + kind.name + ")";
}
void MakeTwo(PaperCapture& c) {
    MakeOne(c);
    MakeOne(c);
}
void MakeOneLater(PaperCapture& c) {
    for (const auto change : c.later) change(c);
}
template <void (*circumstances)(PaperCapture&)> void MakeOneIn(PaperCapture& c) {
    circumstances(c);
    MakeOne(c);
}
void FewNearPoints(PaperCapture& c) { c.SetPositions(45, {0, 15, 30, 45, 60}, 75.0, {-90.0, -45.0, 0.0, 45.0, 90.0}); }

} // namespace

const std::vector<HumanKind>& OddMistakes() {
    static const std::vector<HumanKind> kinds{
        {"uneven noise, more in the A set", true, {}, UnevenNoise<true>, nullptr},
        {"uneven noise, more in the B set", true, {}, UnevenNoise<false>, nullptr},
        {"lines in any order", true, {}, nullptr, LinesInAnyOrder},
        {"B counted from 0 to 360", true, {}, BFromZeroOn, nullptr},
        {"a long stylus, far from the zero", true, {}, LongStylusFarAway, nullptr},
        {"a tip a little aside", true, {}, TipALittleAside, nullptr},
        {"uniform noise", true, {}, UniformNoise, nullptr},
        {"rounded to 0.01 mm", true, {}, nullptr, RoundedToAHundredth},
        {"noisy in Z", true, {}, NoisyInZ, nullptr},

        {"a wrong digit", false, {}, nullptr, WrongDigit},
        {"two digits exchanged", false, {}, nullptr, DigitsExchanged},
        {"a coordinate of the line before", false, {}, nullptr, CoordinateOfTheLineBefore},
        {"coordinates of a line exchanged", false, {}, nullptr, CoordinatesOfALineExchanged},
        {"coordinates of two lines exchanged", false, {}, nullptr, LinesExchanged},
        {"the decimal point of a line", false, {}, nullptr, DecimalPointOfALine},
        {"the signs of a column lost", false, {}, nullptr, SignsOfAColumnLost},
        {"one column in inches", false, {}, nullptr, OneColumnInInches},
        {"angles in radians", false, {}, nullptr, AnglesInRadians},
        {"angles in gon", false, {}, nullptr, AnglesInGon},
        {"columns A and B exchanged", false, {}, nullptr, AnglesExchanged},
        {"the signs of B lost", false, {}, nullptr, SignsOfBLost},
        {"the sign of one B wrong", false, {}, nullptr, SignOfABLost},
        {"a point of the other set", false, {}, nullptr, PointOfTheOtherSet},
        {"the files exchanged", false, {}, nullptr, SetsSwapped},
        {"one file given twice", false, {}, nullptr, SetGivenTwice},
        {"A in steps of 10 instead of 15", false, {}, nullptr, StepsOfTenWritten},
        {"coordinates slipped by lines", false, {}, nullptr, AllLinesShifted},
        {"the readout frozen for some points", false, {}, nullptr, FrozenReadout},
        {"one coordinate frozen", false, {}, nullptr, FrozenCoordinate},

        {"a loose sphere", false, {}, LooseSphere, nullptr},
        {"sphere moved and put back", false, {}, MovedAndPutBack, nullptr},
        {"sphere moved twice", false, {}, MovedTwice, nullptr},
        {"something settles", false, {}, Settles, nullptr},
        {"a random walk", false, {}, RandomWalk, nullptr},
        {"creeps round on its mount", false, {}, CreepsOnItsMount, nullptr},
        {"creeps aside", false, {}, CreepsAside, nullptr},
        {"the stylus unscrews itself", false, {}, UnscrewsItself, nullptr},
        {"noise with heavy tails", false, {}, HeavyTails, nullptr},
        {"one machine axis is noisy", false, {}, OneAxisIsNoisy, nullptr},
        {"rounded coarsely", false, {}, nullptr, RoundedCoarsely},
        {"the stylus bends under its weight", false, {}, StylusBendsUnderItsWeight, nullptr},
        {"indexes badly", false, {}, IndexesBadly, nullptr},
        {"play in A", false, {}, PlayInA, nullptr},
        {"locked now and then", false, {}, LockedNowAndThen, nullptr},
        {"every second point locked", false, {}, EverySecondLocked, nullptr},
        {"two points locked", false, {}, TwoLocked, nullptr},
        {"a part's frame in force in one set", false, {}, nullptr, FrameInForceInOneSet},
        {"sets of two days", false, {}, SetsOfTwoDays, nullptr},
        {"turned and moved within a set", false, {}, TurnedAndMoved, nullptr},
        {"a bad head", false, {}, BadHead, nullptr},
        {"B captured at A = 15 or 30", false, {}, SmallCircleOfB, nullptr},
        {"short arcs in both sets", false, {}, ShortArcsBoth, nullptr},
        {"four noisy points in each set", false, {}, FewNoisyPoints, nullptr},
        {"four points on a short arc", false, {}, FewPointsShortArc, nullptr},

        {"two mistakes at once", false, {}, MakeTwo, MakeOneLater},
        {"a mistake with four points in each set", false, {}, MakeOneIn<FourPoints>, MakeOneLater},
        {"a mistake with five points, short arcs", false, {}, MakeOneIn<FewNearPoints>, MakeOneLater},
        {"a mistake with a bad head", false, {}, MakeOneIn<BadHead>, MakeOneLater},
        {"a mistake with a long stylus", false, {}, MakeOneIn<LongStylusFarAway>, MakeOneLater},
        {"a mistake with uneven noise", false, {}, MakeOneIn<UnevenNoise<true>>, MakeOneLater},

        {"settles on its mount", false, {}, SettlesOnItsMount, nullptr},
        {"a loose stylus comes to rest", false, {}, StylusComesToRest, nullptr},
        {"an angle written beside its index position",
         false,
         {"angle-mistyped", "point-off"},
         WrittenBesideAnIndexPosition,
         nullptr},
    };
    return kinds;
}

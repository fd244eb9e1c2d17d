#include "tests/tools/diagnosis/HumanMistakes.h"

#include "tests/support/SimulatedHead.h"

#include <algorithm>

using paper::CapturedLine;
using paper::Measurement;
using paper::Measurements;
using qmv40::model::Vector3;

namespace {

constexpr Vector3 unlocking{0.0, 0.0, -1.5};

std::vector<double> Steps(double first, double last, std::size_t count) {
    std::vector<double> steps;
    for (std::size_t i = 0; i < count; ++i) {
        steps.push_back(first + (last - first) * static_cast<double>(i) / static_cast<double>(count - 1));
    }
    return steps;
}

std::vector<double> IndexPositions(int first, int step, int last) {
    std::vector<double> positions;
    for (int angle = first; angle <= last; angle += step) positions.push_back(angle);
    return positions;
}

/// The error of an angle that is wrong by whole index steps.
double WholeSteps(PaperCapture& capture) { return capture.OneOf({15.0, -15.0, 30.0, -30.0, 90.0}); }
/// The error of an angle that is wrong by less than one index step.
double PartOfAStep(PaperCapture& capture) {
    return capture.OneOf({1.0, -1.0}) * capture.OneOf({capture.Between(0.1, 1.0), capture.Between(1.0, 6.0)});
}

// Faultless captures

void Nothing(PaperCapture&) {}
void FourPoints(PaperCapture& c) {
    c.SetPositions(45, {0, 30, 60, 90}, c.OneOf({75.0, 90.0}),
                   c.OneOf({std::vector{-180.0, -90.0, 0.0, 90.0}, std::vector{-90.0, 0.0, 90.0, 180.0}}));
}
void FortyPoints(PaperCapture& c) { c.SetPositions(-45, Steps(0, 90, 40), 90, Steps(-180, 171, 40)); }
void AnyArcs(PaperCapture& c) {
    const double first = c.Between(0, 20), last = c.Between(75, 90);
    const double start = c.Between(-180, -60);
    c.SetPositions(c.OneOf({45.0, -45.0}), Steps(first, last, 5 + c.Below(20)), c.Between(60, 90),
                   Steps(start, start + c.Between(190, 330), 5 + c.Below(20)));
}
void ShortStylus(PaperCapture& c) {
    const double length = c.Between(20, 60);
    c.All([&](Measurement& each) { each.tip = {0.01 * each.tip.x, 0.01 * each.tip.y, -length}; });
}
void AlmostIdealHead(PaperCapture& c) {
    const double leanX = c.EitherSign(0, 0.03), leanY = c.EitherSign(0, 0.03), squareness = c.EitherSign(0, 0.02),
                 offset = c.EitherSign(0, 0.015);
    c.All([&](Measurement& each) {
        each.leanX = leanX;
        each.leanY = leanY;
        each.squareness = squareness;
        each.axisOffset = offset;
    });
}
void InexactIndexing(PaperCapture& c) {
    std::normal_distribution<double> index(0.0, 0.002);
    const double heldB = index(c.generator), heldA = index(c.generator);
    for (Measurement& each : c.aSet) each.a += index(c.generator), each.b += heldB;
    for (Measurement& each : c.bSet) each.b += index(c.generator), each.a += heldA;
}
void NoNoise(PaperCapture& c) { c.noise = 0.0; }
void EachPositionTwice(PaperCapture& c) {
    for (Measurements* const set : {&c.aSet, &c.bSet}) {
        const Measurements once = *set;
        set->insert(set->end(), once.begin(), once.end());
    }
}
void KnownSphereAndStylus(PaperCapture& c) {
    c.knownSphere = c.head.sphere + c.Vector(0, 0.02);
    c.knownStylus = -c.head.tip.z + c.EitherSign(0, 1);
}

// Angles

template <bool ofA> void MistypeTurningAngle(PaperCapture& c) {
    Measurements& set = ofA ? c.aSet : c.bSet;
    Measurement& each = set[c.Below(set.size())];
    (ofA ? each.writtenA : each.writtenB) += WholeSteps(c);
}
template <bool ofA> void SwapAngles(PaperCapture& c) {
    Measurements& set = ofA ? c.aSet : c.bSet;
    const std::size_t i = c.Below(set.size() - 1);
    if constexpr (ofA) {
        std::swap(set[i].writtenA, set[i + 1].writtenA);
    } else {
        std::swap(set[i].writtenB, set[i + 1].writtenB);
    }
}
void SwapFarAngles(PaperCapture& c) {
    const std::size_t i = c.Below(c.aSet.size()), j = (i + 1 + c.Below(c.aSet.size() - 1)) % c.aSet.size();
    std::swap(c.aSet[i].writtenA, c.aSet[j].writtenA);
}
void ExchangeSets(PaperCapture& c) {
    std::swap(c.aLines, c.bLines);
    for (auto* const lines : {&c.aLines, &c.bLines}) {
        for (CapturedLine& each : *lines) std::swap(each.a, each.b);
    }
}
void ReverseB(PaperCapture& c) {
    c.All([](Measurement& each) { each.writtenB = -each.writtenB; });
}
void ReverseBOfBSet(PaperCapture& c) {
    for (Measurement& each : c.bSet) each.writtenB = -each.writtenB;
}
void NegativeA(PaperCapture& c) {
    c.All([](Measurement& each) { each.writtenA = -each.writtenA; });
}
void AFromTheHorizontal(PaperCapture& c) {
    c.All([](Measurement& each) { each.writtenA = 90.0 - each.writtenA; });
}
void ASetInReverseOrder(PaperCapture& c) {
    Measurements lines = c.aSet;
    for (std::size_t i = 0; i < lines.size(); ++i) c.aSet[i].writtenA = lines[lines.size() - 1 - i].writtenA;
}
void MissAnIndexPositionOfA(PaperCapture& c) {
    const std::size_t from = 2 + c.Below(c.aSet.size() - 3);
    for (std::size_t i = from; i < c.aSet.size(); ++i) c.aSet[i].writtenA += 15.0;
}
void MissAnIndexPositionOfB(PaperCapture& c) {
    const std::size_t from = 2 + c.Below(c.bSet.size() - 3);
    for (std::size_t i = from; i < c.bSet.size(); ++i) c.bSet[i].writtenB += c.OneOf({15.0});
}
void MoveBWithinASet(PaperCapture& c) {
    const double moved = WholeSteps(c);
    const std::size_t from = 2 + c.Below(c.aSet.size() - 3);
    for (std::size_t i = from; i < c.aSet.size(); ++i) c.aSet[i].b += moved;
}
void MoveAForAPointOfBSet(PaperCapture& c) { c.bSet[c.Below(c.bSet.size())].a -= c.OneOf({15.0, 30.0}); }
void HeldBWrong(PaperCapture& c) {
    const double wrong = WholeSteps(c);
    for (Measurement& each : c.aSet) each.writtenB += wrong;
}
void HeldAWrong(PaperCapture& c) {
    const double wrong = c.OneOf({-15.0, -30.0, -45.0});
    for (Measurement& each : c.bSet) each.writtenA += wrong;
}
void AngleColumnSlipped(PaperCapture& c) {
    // The angles stand one line further down, the first one is written twice.
    for (std::size_t i = c.aSet.size() - 1; i > 0; --i) c.aSet[i].writtenA = c.aSet[i - 1].writtenA;
}
void BTurnedAlong(PaperCapture& c) {
    for (std::size_t i = 0; i < c.aSet.size(); ++i) c.aSet[i].b += 15.0 * static_cast<double>(i);
}

// Points

CapturedLine& AnyLine(PaperCapture& c) {
    std::vector<CapturedLine>& lines = c.Either() ? c.aLines : c.bLines;
    return lines[c.Below(lines.size())];
}
void PointOff(PaperCapture& c) {
    CapturedLine& line = AnyLine(c);
    line.position = line.position + c.Vector(0.12, 3.0);
}
void PointFarOff(PaperCapture& c) {
    AnyLine(c).position[c.Below(3)] += c.OneOf({1.0, -1.0}) * c.OneOf({9.0, 90.0, 0.9, 100.0});
}
void SignDropped(PaperCapture& c) {
    CapturedLine& line = AnyLine(c);
    const std::size_t axis = c.Below(3);
    line.position[axis] = -line.position[axis];
}
void DecimalPointShifted(PaperCapture& c) { AnyLine(c).position[c.Below(3)] *= 10.0; }
void TwoPointsOff(PaperCapture& c) {
    const std::size_t i = c.Below(c.aLines.size()), j = c.Below(c.bLines.size());
    c.aLines[i].position = c.aLines[i].position + c.Vector(0.3, 3.0);
    c.bLines[j].position = c.bLines[j].position + c.Vector(0.3, 3.0);
}
void PointWrittenTwice(PaperCapture& c) {
    std::vector<CapturedLine>& lines = c.Either() ? c.aLines : c.bLines;
    const std::size_t i = 1 + c.Below(lines.size() - 1);
    lines[i].position = lines[i - 1].position;
}

// Locked and unlocked

void Lock(Measurement& each) { each.shift = each.shift - unlocking; }
void LockAPoint(PaperCapture& c) {
    Measurements& set = c.AnySet();
    Lock(set[c.Below(set.size())]);
}
void LockFromALineOn(PaperCapture& c) { c.FromOn(c.WithinASet(), Lock); }
void LockUpToALine(PaperCapture& c) {
    const std::size_t from = c.WithinASet();
    c.All(Lock);
    c.FromOn(from, [](Measurement& each) { each.shift = each.shift + unlocking; });
}
void LockTheASet(PaperCapture& c) { std::ranges::for_each(c.aSet, Lock); }
void LockTheBSet(PaperCapture& c) { std::ranges::for_each(c.bSet, Lock); }
void LockAll(PaperCapture& c) {
    c.knownSphere = c.head.sphere + c.Vector(0, 0.01);
    c.All(Lock);
}

// What moved

void TurnFrom(PaperCapture& c, std::size_t from) {
    const double turn = PartOfAStep(c);
    c.FromOn(from, [turn](Measurement& each) { each.mounting += turn; });
}
void TurnBetweenTheSets(PaperCapture& c) { TurnFrom(c, c.Between()); }
void TurnWithinASet(PaperCapture& c) { TurnFrom(c, c.WithinASet()); }
void MoveFrom(PaperCapture& c, std::size_t from, const Vector3& move) {
    c.FromOn(from, [&move](Measurement& each) { each.sphere = each.sphere + move; });
}
void MoveBetweenTheSets(PaperCapture& c) { MoveFrom(c, c.Between(), c.Vector(0.12, 3.0)); }
void MoveALittleBetweenTheSets(PaperCapture& c) { MoveFrom(c, c.Between(), c.Vector(0.1, 0.5)); }
void MoveFarBetweenTheSets(PaperCapture& c) { MoveFrom(c, c.Between(), c.Vector(30.0, 300.0)); }
void MoveWithinASet(PaperCapture& c) { MoveFrom(c, c.WithinASet(), c.Vector(0.12, 3.0)); }
void MoveFarWithinASet(PaperCapture& c) { MoveFrom(c, c.WithinASet(), c.Vector(3.0, 50.0)); }
void MoveUpOrDownWithinASet(PaperCapture& c) { MoveFrom(c, c.WithinASet(), {0.0, 0.0, c.EitherSign(0.15, 2.0)}); }
void Drift(PaperCapture& c) {
    const Vector3 whole = c.Vector(0.3, 1.5);
    const double step = 1.0 / static_cast<double>(c.aSet.size() + c.bSet.size());
    double share = 0.0;
    c.All([&](Measurement& each) { each.sphere = each.sphere + (share += step) * whole; });
}
void LeanFrom(PaperCapture& c, std::size_t from) {
    const double x = c.EitherSign(0.1, 2.0), y = c.EitherSign(0.1, 2.0);
    c.FromOn(from, [=](Measurement& each) { each.leanX += x, each.leanY += y; });
}
void LeanInOneSet(PaperCapture& c) { LeanFrom(c, c.Between()); }
void LeanFromALineOn(PaperCapture& c) { LeanFrom(c, c.WithinASet()); }
void MountAskew(PaperCapture& c) { LeanFrom(c, 0); }

// Stylus and tip

void StylusFrom(PaperCapture& c, std::size_t from) {
    const double longer = c.OneOf({1.0, -0.5}) * c.Between(0.05, 0.6) * -c.head.tip.z;
    c.FromOn(from, [=](Measurement& each) { each.tip.z -= longer; });
}
void AnotherStylusForOneSet(PaperCapture& c) { StylusFrom(c, c.Between()); }
void AnotherStylusFromALineOn(PaperCapture& c) { StylusFrom(c, c.WithinASet()); }
void BentStylusInOneSet(PaperCapture& c) {
    const double x = c.EitherSign(0.3, 6.0), y = c.EitherSign(0.3, 6.0);
    c.FromOn(c.Between(), [=](Measurement& each) { each.tip = each.tip + Vector3{x, y, 0.0}; });
}
void BentStylusFromALineOn(PaperCapture& c) {
    const double x = c.EitherSign(0.3, 6.0), y = c.EitherSign(0.3, 6.0);
    c.FromOn(c.WithinASet(), [=](Measurement& each) { each.tip = each.tip + Vector3{x, y, 0.0}; });
}
void TipInForce(Measurement& each) {
    // With the offset of the tip in force, the machine shows the position of the tip: the centre of the sphere.
    each.shift = each.shift + each.sphere - each.Reading();
}
void TipInForceThroughout(PaperCapture& c) { c.All(TipInForce); }
void TipInForceInOneSet(PaperCapture& c) { std::ranges::for_each(c.AnySet(), TipInForce); }
void ConstantTipOffset(PaperCapture& c) {
    c.knownSphere = c.head.sphere;
    c.All([](Measurement& each) { each.shift = each.shift + each.tip; });
}
void ConstantTipOffsetInOneSet(PaperCapture& c) {
    c.FromOn(c.Between(), [](Measurement& each) { each.shift = each.shift + each.tip; });
}
void OtherStylusThanSaid(PaperCapture& c) { c.knownStylus = -c.head.tip.z * c.OneOf({0.6, 1.5}); }
void StarStylus(PaperCapture& c) {
    const double x = c.EitherSign(20, 60);
    c.All([x](Measurement& each) { each.tip.x += x; });
}

// Units, signs and columns

void Scale(std::vector<CapturedLine>& lines, double factor) {
    for (CapturedLine& each : lines) each.position = factor * each.position;
}
void ScaleBoth(PaperCapture& c, double factor) { Scale(c.aLines, factor), Scale(c.bLines, factor); }
void Inches(PaperCapture& c) { ScaleBoth(c, 1 / 25.4); }
void Metres(PaperCapture& c) { ScaleBoth(c, 1e-3); }
void Micrometres(PaperCapture& c) { ScaleBoth(c, 1e3); }
void InchesInOneSet(PaperCapture& c) { Scale(c.Either() ? c.aLines : c.bLines, 1 / 25.4); }
template <typename Change> void Readings(PaperCapture& c, Change&& change) {
    for (auto* const lines : {&c.aLines, &c.bLines}) {
        for (CapturedLine& each : *lines) change(each.position);
    }
}
void MirrorXOrY(PaperCapture& c) {
    const std::size_t axis = c.Below(2);
    Readings(c, [axis](Vector3& position) { position[axis] = -position[axis]; });
}
void MirrorZ(PaperCapture& c) {
    Readings(c, [](Vector3& position) { position.z = -position.z; });
}
void ExchangeXAndY(PaperCapture& c) {
    Readings(c, [](Vector3& position) { std::swap(position.x, position.y); });
}
void ExchangeZ(PaperCapture& c) {
    const std::size_t with = c.Below(2);
    Readings(c, [with](Vector3& position) { std::swap(position[with], position[2]); });
}
void MirrorXInOneSet(PaperCapture& c) {
    for (CapturedLine& each : c.Either() ? c.aLines : c.bLines) each.position.x = -each.position.x;
}
void HorizontalArm(PaperCapture& c) {
    const bool alongX = c.Either();
    Readings(c, [alongX](Vector3& p) { p = alongX ? Vector3{p.z, p.y, -p.x} : Vector3{p.x, p.z, -p.y}; });
}

// Sets that determine nothing

void HangingStylus(PaperCapture& c) {
    for (Measurement& each : c.bSet) each.a = each.writtenA = 0.0;
}
void OnePosition(PaperCapture& c) {
    Measurements& set = c.AnySet();
    const Measurement one = set[c.Below(set.size())];
    std::ranges::fill(set, one);
}
void TwoPositions(PaperCapture& c) {
    Measurements& set = c.AnySet();
    const std::size_t i = c.Below(set.size() - 1);
    const Measurement one = set[i], other = set[i + 1 + c.Below(set.size() - i - 1)];
    for (std::size_t k = 0; k < set.size(); ++k) set[k] = k % 2 == 0 ? one : other;
}
void NeighbouringPositions(PaperCapture& c) {
    Measurements& set = c.AnySet();
    const bool ofA = &set == &c.aSet;
    const double start = ofA ? 15.0 * static_cast<double>(c.Below(5)) : 15.0 * static_cast<double>(c.Below(20)) - 150.0;
    for (std::size_t i = 0; i < set.size(); ++i) {
        const double angle = start + (i % 2 == 0 ? 0.0 : 15.0);
        (ofA ? set[i].a : set[i].b) = angle;
        (ofA ? set[i].writtenA : set[i].writtenB) = angle;
    }
}
void NeverTurned(PaperCapture& c) {
    // The angles are written down, but the head was not turned.
    Measurements& set = c.AnySet();
    for (Measurement& each : set) each.a = set.front().a, each.b = set.front().b;
}
void ShortTiltArc(PaperCapture& c) {
    const double first = c.Between(0, 60);
    const std::vector<double> tilts = Steps(first, first + c.Between(6, 25), c.aSet.size());
    for (std::size_t i = 0; i < tilts.size(); ++i) c.aSet[i].a = c.aSet[i].writtenA = tilts[i];
}
void ShortSwivelArc(PaperCapture& c) {
    const std::vector<double> swivels = Steps(0, c.Between(6, 25), c.bSet.size());
    for (std::size_t i = 0; i < swivels.size(); ++i) c.bSet[i].b = c.bSet[i].writtenB = swivels[i];
}
void LooseStylus(PaperCapture& c) { c.noise = c.Between(0.03, 0.5); }
void NearAnEdge(PaperCapture& c) {
    const double mounting = c.Between(-3, 3), b = c.OneOf({0.0, 90.0, -90.0, 180.0});
    c.All([=](Measurement& each) { each.mounting = mounting; });
    for (Measurement& each : c.aSet) each.b = each.writtenB = b;
}
void PointOnAShortArc(PaperCapture& c) {
    const std::vector<double> tilts = Steps(30, 75, c.aSet.size());
    for (std::size_t i = 0; i < tilts.size(); ++i) c.aSet[i].a = c.aSet[i].writtenA = tilts[i];
    Measurement& each = c.aSet[c.Below(c.aSet.size())];
    each.shift = each.shift + c.Vector(0.03, 0.3);
}

/// Notes the numbers of the elements that are different now. `offset`: the number of the first one.
template <typename Element> void NoteChanges(const std::vector<Element>& before, const std::vector<Element>& now,
                                             std::size_t offset, std::vector<std::size_t>& changed) {
    if (before.size() != now.size()) return;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (before[i] != now[i]) changed.push_back(offset + i);
    }
}

} // namespace

Vector3 Measurement::Reading() const {
    return SimulatedHead{sphere, mounting, tip, shift, axisOffset, squareness, leanX, leanY}.Position({a, b});
}

std::vector<CapturedLine> paper::LinesOf(const Measurements& measurements, double noise, std::mt19937_64& generator) {
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<CapturedLine> lines;
    lines.reserve(measurements.size());
    for (const Measurement& measurement : measurements) {
        CapturedLine line{measurement.writtenA, measurement.writtenB, measurement.Reading()};
        for (std::size_t i = 0; i < 3; ++i) line.position[i] += noise * normal(generator);
        lines.push_back(line);
    }
    return lines;
}

PaperCapture::PaperCapture(std::uint64_t seed) : generator(seed) {
    head.sphere = {Between(-800, 800), Between(-800, 800), Between(-900, 100)};
    head.mounting = OneOf({0.0, Between(-1, 1), Between(-5, 5), Between(-30, 30)});
    head.tip = {Between(-0.5, 0.5), Between(-0.5, 0.5), -OneOf({Between(20, 100), Between(80, 300), Between(80, 300)})};
    head.shift = unlocking;
    noise = Between(0.0005, 0.005);
    aSetIsFirst = Below(4) != 0;
    const std::vector<double> tilts =
        OneOf({IndexPositions(0, 15, 90), IndexPositions(0, 15, 90), IndexPositions(0, 30, 90),
               IndexPositions(15, 15, 90), Steps(0, 90, 10 + Below(30))});
    const std::vector<double> swivels =
        OneOf({IndexPositions(-180, 30, 180), IndexPositions(-180, 45, 135), IndexPositions(-180, 60, 120),
               IndexPositions(-180, 90, 90), IndexPositions(-180, 15, 165), IndexPositions(-120, 30, 120)});
    SetPositions(OneOf({45.0, 45.0, -45.0, 135.0, -135.0}), tilts, OneOf({90.0, 75.0, 90.0, 60.0}), swivels);
}

double PaperCapture::Between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(generator);
}
double PaperCapture::EitherSign(double least, double most) { return (Either() ? 1.0 : -1.0) * Between(least, most); }
std::size_t PaperCapture::Below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
}
Vector3 PaperCapture::Vector(double least, double most) {
    std::normal_distribution<double> normal;
    const Vector3 any{normal(generator), normal(generator), normal(generator)};
    return Between(least, most) * qmv40::model::SafeUnit(any);
}
std::size_t PaperCapture::WithinASet() {
    const std::size_t first = First().size(), second = Second().size();
    return Either() ? 2 + Below(first - 3) : first + 2 + Below(second - 3);
}
void PaperCapture::SetPositions(double aSetHeldAt, const std::vector<double>& tilts, double bSetHeldAt,
                                const std::vector<double>& swivels) {
    const auto standing = [this](double a, double b) {
        Measurement each = head;
        each.a = each.writtenA = a;
        each.b = each.writtenB = b;
        return each;
    };
    aSet.clear();
    bSet.clear();
    for (const double tilt : tilts) aSet.push_back(standing(tilt, aSetHeldAt));
    for (const double swivel : swivels) bSet.push_back(standing(bSetHeldAt, swivel));
}
void PaperCapture::Measure() {
    aLines = LinesOf(aSet, noise, generator);
    bLines = LinesOf(bSet, noise, generator);
}

const std::vector<HumanKind>& CommonMistakes() {
    static const std::vector<HumanKind> kinds{
        {"as it should be", true, {}, Nothing, nullptr},
        {"four points in each set", true, {}, FourPoints, nullptr},
        {"forty points in each set", true, {}, FortyPoints, nullptr},
        {"any arcs and numbers of points", true, {}, AnyArcs, nullptr},
        {"a short stylus", true, {}, ShortStylus, nullptr},
        {"a head that is almost ideal", true, {}, AlmostIdealHead, nullptr},
        {"index positions off by 0.002 deg", true, {}, InexactIndexing, nullptr},
        {"no noise", true, {}, NoNoise, nullptr},
        {"every position twice", true, {}, EachPositionTwice, nullptr},
        {"sphere and stylus known", true, {}, KnownSphereAndStylus, nullptr},

        {"A of a point mistyped", false, {"angle-mistyped"}, MistypeTurningAngle<true>, nullptr},
        {"B of a point mistyped", false, {"angle-mistyped"}, MistypeTurningAngle<false>, nullptr},
        {"A of neighbours swapped", false, {"angles-swapped"}, SwapAngles<true>, nullptr},
        {"B of neighbours swapped", false, {"angles-swapped"}, SwapAngles<false>, nullptr},
        {"A of any two points swapped", false, {"angles-swapped"}, SwapFarAngles, nullptr},
        {"sets and angles exchanged", false, {"sets-exchanged"}, nullptr, ExchangeSets},
        {"B reversed", false, {"swivel-reversed"}, ReverseB, nullptr},
        {"B reversed in the B set", false, {"swivel-reversed", "angles-swapped"}, ReverseBOfBSet, nullptr},
        {"A negative", false, {"tilt-reversed"}, NegativeA, nullptr},
        {"A from the horizontal", false, {"tilt-reversed"}, AFromTheHorizontal, nullptr},
        {"A set written in reverse order", false, {"tilt-reversed"}, ASetInReverseOrder, nullptr},
        {"an index position of A missed", false, {"angle-mistyped"}, MissAnIndexPositionOfA, nullptr},
        {"an index position of B missed", false, {"angle-mistyped"}, MissAnIndexPositionOfB, nullptr},
        {"B moved within the A set", false, {"other-axis-moved"}, MoveBWithinASet, nullptr},
        {"A moved for a point of the B set", false, {"other-axis-moved"}, MoveAForAPointOfBSet, nullptr},
        {"B of the A set written wrong", false, {"set-angle-wrong"}, HeldBWrong, nullptr},
        {"A of the B set written wrong", false, {"set-angle-wrong"}, HeldAWrong, nullptr},
        {"angle column slipped by a line", false, {}, AngleColumnSlipped, nullptr},
        {"B turned along in the A set", false, {}, BTurnedAlong, nullptr},

        {"a point off", false, {"point-off", "point-suspicious"}, nullptr, PointOff},
        {"a digit of a point wrong", false, {"point-off"}, nullptr, PointFarOff},
        {"the sign of a coordinate dropped", false, {"point-off"}, nullptr, SignDropped},
        {"a decimal point shifted", false, {"point-off"}, nullptr, DecimalPointShifted},
        {"two points off", false, {"point-off"}, nullptr, TwoPointsOff},
        {"a point written twice", false, {"angle-mistyped", "point-off"}, nullptr, PointWrittenTwice},
        {"a bad point on a short arc", false, {"point-off", "point-suspicious"}, PointOnAShortArc, nullptr},

        {"a point locked", false, {"captured-locked"}, LockAPoint, nullptr},
        {"locked from a line on", false, {"captured-locked"}, LockFromALineOn, nullptr},
        {"locked up to a line", false, {"captured-locked"}, LockUpToALine, nullptr},
        {"the A set locked", false, {"captured-locked"}, LockTheASet, nullptr},
        {"the B set locked", false, {"captured-locked"}, LockTheBSet, nullptr},
        {"all locked, sphere known", false, {"sphere-elsewhere"}, LockAll, nullptr},

        {"turned on its mount between the sets", false, {"turned-on-mount"}, TurnBetweenTheSets, nullptr},
        {"turned on its mount within a set", false, {"turned-on-mount"}, TurnWithinASet, nullptr},
        {"sphere moved between the sets", false, {"sets-apart"}, MoveBetweenTheSets, nullptr},
        {"sphere moved a little between the sets", false, {"sets-apart"}, MoveALittleBetweenTheSets, nullptr},
        {"sphere moved far between the sets", false, {"sets-apart"}, MoveFarBetweenTheSets, nullptr},
        {"sphere moved within a set", false, {"sphere-moved"}, MoveWithinASet, nullptr},
        {"machine zero lost within a set", false, {"sphere-moved"}, MoveFarWithinASet, nullptr},
        {"sphere sank or rose within a set", false, {"sphere-moved"}, MoveUpOrDownWithinASet, nullptr},
        {"drift", false, {}, Drift, nullptr},
        {"leaning in one set", false, {"head-tilted"}, LeanInOneSet, nullptr},
        {"leaning from a line on", false, {"head-tilted"}, LeanFromALineOn, nullptr},
        {"mounted askew", false, {"head-leans"}, MountAskew, nullptr},

        {"another stylus for one set", false, {"stylus-changed"}, AnotherStylusForOneSet, nullptr},
        {"another stylus from a line on", false, {"stylus-changed"}, AnotherStylusFromALineOn, nullptr},
        {"a bent stylus in one set", false, {"stylus-bent", "sets-apart"}, BentStylusInOneSet, nullptr},
        {"a bent stylus from a line on", false, {"stylus-bent"}, BentStylusFromALineOn, nullptr},
        {"tip in force throughout", false, {"tip-in-force"}, TipInForceThroughout, nullptr},
        {"tip in force in one set", false, {"tip-in-force"}, TipInForceInOneSet, nullptr},
        {"a constant tip offset, sphere known", false, {"sphere-elsewhere"}, ConstantTipOffset, nullptr},
        {"a constant tip offset in one set", false, {"sets-apart"}, ConstantTipOffsetInOneSet, nullptr},
        {"another stylus than is said", false, {"stylus-length-differs"}, OtherStylusThanSaid, nullptr},
        {"a star stylus", false, {"tip-off-axis"}, StarStylus, nullptr},

        {"inches", false, {"units-wrong"}, nullptr, Inches},
        {"metres", false, {"units-wrong"}, nullptr, Metres},
        {"micrometres", false, {"units-wrong"}, nullptr, Micrometres},
        {"inches in one set", false, {"units-wrong"}, nullptr, InchesInOneSet},
        {"X or Y mirrored", false, {"axis-mirrored", "swivel-reversed"}, nullptr, MirrorXOrY},
        {"Z mirrored", false, {"axis-mirrored"}, nullptr, MirrorZ},
        {"X mirrored in one set", false, {"axis-mirrored"}, nullptr, MirrorXInOneSet},
        {"X and Y exchanged", false, {"axes-exchanged"}, nullptr, ExchangeXAndY},
        {"Z exchanged with another", false, {"axes-exchanged"}, nullptr, ExchangeZ},
        {"a horizontal arm", false, {"arm-horizontal"}, nullptr, HorizontalArm},

        {"the stylus hanging in the B set", false, {"circle-too-small"}, HangingStylus, nullptr},
        {"one position again and again", false, {"too-few-positions"}, OnePosition, nullptr},
        {"two positions", false, {"too-few-positions"}, TwoPositions, nullptr},
        {"two neighbouring positions", false, {"too-few-positions"}, NeighbouringPositions, nullptr},
        {"a set never turned", false, {"too-few-positions"}, NeverTurned, nullptr},
        {"a short tilt arc", false, {}, ShortTiltArc, nullptr},
        {"a short swivel arc", false, {}, ShortSwivelArc, nullptr},
        {"a loose stylus", false, {}, LooseStylus, nullptr},
        {"the A set near the edge of a quadrant", false, {"rotation-on-wrong-side"}, NearAnEdge, nullptr},
    };
    return kinds;
}

const std::vector<HumanKind>& HumanKinds() {
    static const std::vector<HumanKind> kinds = [] {
        std::vector<HumanKind> all = CommonMistakes();
        all.insert(all.end(), OddMistakes().begin(), OddMistakes().end());
        return all;
    }();
    return kinds;
}

PaperCapture MakeCapture(const HumanKind& kind, std::uint64_t seed) {
    PaperCapture capture(seed);
    const Measurements aSet = capture.aSet, bSet = capture.bSet;
    if (kind.circumstances != nullptr) kind.circumstances(capture);
    NoteChanges(aSet, capture.aSet, 0, capture.changed);
    NoteChanges(bSet, capture.bSet, aSet.size(), capture.changed);
    capture.Measure();
    const auto aLines = capture.aLines, bLines = capture.bLines;
    if (kind.readings != nullptr) kind.readings(capture);
    NoteChanges(aLines, capture.aLines, 0, capture.changed);
    NoteChanges(bLines, capture.bLines, aLines.size(), capture.changed);
    return capture;
}

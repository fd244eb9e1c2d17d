#include "tests/tools/diagnosis/SpoiltCapture.h"

#include "tools/model/Angles.h"

#include <numeric>

using namespace qmv40;

namespace {

using Expected = std::optional<ExpectedFinding>;

std::vector<std::size_t> Range(std::size_t first, std::size_t last) {
    std::vector<std::size_t> points(last - first);
    std::iota(points.begin(), points.end(), first);
    return points;
}

/// Wrong by an index position or more, or by a slip of the pen.
double WrongBy(DrawnCapture& capture) { return capture.OneOf({15.0, -15.0, 30.0, 90.0, 1.0, -9.0}); }

Expected MistypeA(DrawnCapture& capture) {
    const std::size_t i = capture.Below(capture.aSet.size());
    capture.aSet[i].APosition += WrongBy(capture);
    return ExpectedFinding{diagnosis::FindingKind::AngleMistyped, {i}};
}

Expected MistypeB(DrawnCapture& capture) {
    const std::size_t i = capture.Below(capture.bSet.size());
    capture.bSet[i].BPosition += WrongBy(capture);
    return ExpectedFinding{diagnosis::FindingKind::AngleMistyped, {capture.aSet.size() + i}};
}

Expected SwapA(DrawnCapture& capture) {
    const std::size_t i = capture.Below(capture.aSet.size() - 1);
    std::swap(capture.aSet[i].APosition, capture.aSet[i + 1].APosition);
    return ExpectedFinding{diagnosis::FindingKind::AnglesSwapped, {i, i + 1}};
}

Expected ExchangeSets(DrawnCapture& capture) {
    std::swap(capture.aSet, capture.bSet);
    for (Items* const set : {&capture.aSet, &capture.bSet}) {
        for (HeadAlignmentDataItem& item : *set) std::swap(item.APosition, item.BPosition);
    }
    return ExpectedFinding{diagnosis::FindingKind::SetsExchanged, {}};
}

Expected ReverseB(DrawnCapture& capture) {
    for (Items* const set : {&capture.aSet, &capture.bSet}) {
        for (HeadAlignmentDataItem& item : *set) item.BPosition = -item.BPosition;
    }
    return ExpectedFinding{diagnosis::FindingKind::SwivelReversed, {}};
}

Expected ReverseA(DrawnCapture& capture) {
    const bool fromTheHorizontal = capture.OneOf({true, false});
    for (Items* const set : {&capture.aSet, &capture.bSet}) {
        for (HeadAlignmentDataItem& item : *set) {
            item.APosition = fromTheHorizontal ? 90.0 - item.APosition : -item.APosition;
        }
    }
    return ExpectedFinding{diagnosis::FindingKind::TiltReversed, {}};
}

/// B moves within the A set, from its third point on or later; where A is 0 it would not be seen.
Expected MoveBWithinASet(DrawnCapture& capture) {
    const std::size_t first = 2 + capture.Below(capture.aSet.size() - 2);
    const double moved = capture.OneOf({15.0, -15.0, 30.0});
    for (std::size_t i = first; i < capture.aSet.size(); ++i) {
        HeadAlignmentDataItem& item = capture.aSet[i];
        item = capture.Captured(item.APosition, item.BPosition + moved, item);
    }
    return ExpectedFinding{diagnosis::FindingKind::OtherAxisMoved, Range(first, capture.aSet.size())};
}

Expected MoveAForOnePointOfBSet(DrawnCapture& capture) {
    const std::size_t i = capture.Below(capture.bSet.size());
    HeadAlignmentDataItem& item = capture.bSet[i];
    item = capture.Captured(item.APosition - 15.0, item.BPosition, item);
    return ExpectedFinding{diagnosis::FindingKind::OtherAxisMoved, {capture.aSet.size() + i}};
}

Expected WriteBOfASetWrong(DrawnCapture& capture) {
    const double wrongBy = capture.OneOf({15.0, -15.0, 90.0});
    for (HeadAlignmentDataItem& item : capture.aSet) item.BPosition += wrongBy;
    return ExpectedFinding{diagnosis::FindingKind::SetAngleWrong, Range(0, capture.aSet.size())};
}

Expected WriteAOfBSetWrong(DrawnCapture& capture) {
    for (HeadAlignmentDataItem& item : capture.bSet) item.APosition -= 15.0;
    return ExpectedFinding{diagnosis::FindingKind::SetAngleWrong,
                           Range(capture.aSet.size(), capture.aSet.size() + capture.bSet.size())};
}

Expected PutAPointOff(DrawnCapture& capture) {
    const bool isOfASet = capture.OneOf({true, false});
    Items& set = isOfASet ? capture.aSet : capture.bSet;
    const std::size_t i = capture.Below(set.size());
    // A shift along all three machine axes: it has a part out of the circle's plane and a radial part in both sets.
    set[i].XPosition += 0.7;
    set[i].YPosition -= 0.4;
    set[i].ZPosition += 0.8;
    return ExpectedFinding{diagnosis::FindingKind::PointOff, {isOfASet ? i : capture.aSet.size() + i}};
}

Expected MoveThePoleBetweenTheSets(DrawnCapture& capture) {
    const double moves[] = {capture.Between(0.2, 2.0), capture.Between(0.2, 2.0), capture.Between(0.2, 2.0)};
    for (HeadAlignmentDataItem& item : capture.bSet) {
        item.XPosition += moves[0];
        item.YPosition += moves[1];
        item.ZPosition += moves[2];
    }
    return ExpectedFinding{diagnosis::FindingKind::SetsApart, Range(0, capture.aSet.size())};
}

void CaptureAgain(DrawnCapture& capture) {
    for (Items* const set : {&capture.aSet, &capture.bSet}) {
        for (HeadAlignmentDataItem& item : *set) item = capture.Captured(item.APosition, item.BPosition, item);
    }
}

/// The component's rotation is off by a degree at least.
bool ComponentErrs(const DrawnCapture& capture) {
    const double rotation = UnderTest(capture.aSet, capture.bSet).rotation;
    return std::abs(model::Wrapped(rotation - capture.head.mountingAngle)) > 1.0;
}

Expected TakeAStarStylus(DrawnCapture& capture) {
    capture.head.stylus[0] = capture.OneOf({-40.0, 40.0});
    CaptureAgain(capture);
    if (!ComponentErrs(capture)) return std::nullopt;
    return ExpectedFinding{diagnosis::FindingKind::TipOffAxis, {}};
}

Expected CaptureASetNearAnEdge(DrawnCapture& capture) {
    capture.head.mountingAngle = capture.Between(-3.0, 3.0);
    const double moved = capture.OneOf({0.0, 90.0, -90.0, 180.0}) - capture.aSetHeldAt;
    for (HeadAlignmentDataItem& item : capture.aSet) item.BPosition += moved;
    CaptureAgain(capture);
    if (!ComponentErrs(capture)) return std::nullopt;
    return ExpectedFinding{diagnosis::FindingKind::RotationOnWrongSide, {}};
}

} // namespace

DrawnCapture::DrawnCapture(std::uint64_t seed) : generator(seed) {
    head.pole = {Between(-800, 800), Between(-800, 800), Between(-900, 100)};
    head.mountingAngle = OneOf({0.0, Between(-1, 1), Between(-5, 5), Between(-30, 30)});
    head.stylus = {Between(-2, 2), Between(-2, 2), -Between(60, 350)};
    noise = OneOf({0.0, 1e-4, 1e-3, 5e-3});
    aSetHeldAt = OneOf({45.0, -45.0, 135.0, -135.0});
    bSetHeldAt = OneOf({90.0, 75.0, 60.0, 45.0});
    switch (Below(3)) {
    case 0:
        aSet = head.ASet(aSetHeldAt, 4);
        break;
    case 1:
        aSet = head.ASet(aSetHeldAt, 5, 30, 90);
        break;
    default:
        aSet = head.ASet(aSetHeldAt);
        break;
    }
    switch (Below(4)) {
    case 0:
        bSet = head.BSet(bSetHeldAt, 4, -90, 180);
        break;
    case 1:
        bSet = head.BSet(bSetHeldAt, 10, -45, 90);
        break;
    case 2:
        bSet = head.BSet(bSetHeldAt, 13, -180, 180);
        break;
    default:
        bSet = head.BSet(bSetHeldAt);
        break;
    }
    CaptureAgain(*this);
}

double DrawnCapture::Between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(generator);
}

std::size_t DrawnCapture::Below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
}

HeadAlignmentDataItem DrawnCapture::Captured(double a, double b, const HeadAlignmentDataItem& written) {
    HeadAlignmentDataItem item = WithNoise(Items{head.Point(a, b)}, noise, generator()).front();
    item.APosition = written.APosition;
    item.BPosition = written.BPosition;
    return item;
}

const std::vector<Mistake>& AllMistakes() {
    static const std::vector<Mistake> mistakes{
        {"A of a point mistyped", MistypeA},
        {"B of a point mistyped", MistypeB},
        {"A of two points swapped", SwapA},
        {"sets exchanged", ExchangeSets},
        {"B counted the wrong way round", ReverseB},
        {"A counted the wrong way round", ReverseA},
        {"B moved within the A set", MoveBWithinASet},
        {"A moved for a point of the B set", MoveAForOnePointOfBSet},
        {"B of the A set wrong", WriteBOfASetWrong},
        {"A of the B set wrong", WriteAOfBSetWrong},
        {"a point off its place", PutAPointOff},
        {"the pole moved between the sets", MoveThePoleBetweenTheSets},
        {"a star stylus", TakeAStarStylus},
        {"the A set captured near an edge", CaptureASetNearAnEdge},
    };
    return mistakes;
}

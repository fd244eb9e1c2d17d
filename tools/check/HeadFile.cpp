#include "check/HeadFile.h"

#include "head/RoundThePole.h"

namespace check {

namespace {

CMaVector VectorOf(const qmv40::FixedOffset& offset) { return {offset.x, offset.y, offset.z}; }

HeadDimensions DimensionsOf(const RoundThePole& head) {
    HeadDimensions dimensions{VectorOf(head.GetHeadCentreToDriveCupOffset()),
                              {0.0, 0.0, 0.0},
                              {0.0, 0.0, 0.0},
                              {0.0, 0.0, 0.0},
                              head.GetLockedToUnlockedLeverRotation(),
                              head.GetUnlockedToLockedLeverRotation()};
    head.GetHeadCentreToLeverCentreOffset(0, dimensions.leverCentre);
    head.GetLeverCentreToBallCentreOffset(0, dimensions.lockedBall);
    head.GetLeverCentreToBallCentreOffset(1, dimensions.unlockedBall);
    return dimensions;
}

} // namespace

HeadModel ReadHeadModel(const wchar_t* fileName) {
    const RoundThePole head;
    const auto number = [&](const wchar_t* section, const wchar_t* key) {
        return head.ReadDoubleFromIniFile(section, key, fileName);
    };
    const double x = number(L"HEADCENTRE", L"X");
    const double y = number(L"HEADCENTRE", L"Y");
    const double z = number(L"HEADCENTRE", L"Z");
    return {{x, y, z}, number(L"AlignmentOffset", L"RequiredRotationAroundZ"), DimensionsOf(head)};
}

} // namespace check

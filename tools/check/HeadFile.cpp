#include "tools/check/HeadFile.h"

#include "head/RoundThePole.h"

namespace qmv40::check {

namespace {

model::Vector3 VectorOf(const FixedOffset& offset) { return {offset.x, offset.y, offset.z}; }

/// What a query of the head gives.
template <typename Query> model::Vector3 Given(Query&& query) {
    CMaVector given(0.0, 0.0, 0.0);
    query(given);
    return {given[0], given[1], given[2]};
}

model::HeadDimensions DimensionsOf(const RoundThePole& head) {
    return {VectorOf(head.GetHeadCentreToDriveCupOffset()),
            Given([&](CMaVector& offset) { head.GetHeadCentreToLeverCentreOffset(0, offset); }),
            Given([&](CMaVector& offset) { head.GetLeverCentreToBallCentreOffset(0, offset); }),
            Given([&](CMaVector& offset) { head.GetLeverCentreToBallCentreOffset(1, offset); }),
            head.GetLockedToUnlockedLeverRotation(),
            head.GetUnlockedToLockedLeverRotation()};
}

} // namespace

model::HeadModel ReadHeadModel(const wchar_t* fileName) {
    const RoundThePole head;
    const auto number = [&](const wchar_t* section, const wchar_t* key) {
        return head.ReadDoubleFromIniFile(section, key, fileName);
    };
    const double x = number(L"HEADCENTRE", L"X");
    const double y = number(L"HEADCENTRE", L"Y");
    const double z = number(L"HEADCENTRE", L"Z");
    return {{x, y, z}, number(L"AlignmentOffset", L"RequiredRotationAroundZ"), DimensionsOf(head)};
}

} // namespace qmv40::check

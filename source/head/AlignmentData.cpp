// From captured points to a geometry: the sequence of the computation, and the steps that check and read the points.

#include "head/RoundThePole.h"

#include "errors/RaiseError.h"
#include "interface/Records.h"
#include "maths/RaisingGeometryErrors.h"

#include <span>

using namespace qmv40;

namespace {

/// A private copy of a caller's array, so that the caller's points are never altered.
class AlignmentDataCopy {
public:
    AlignmentDataCopy() = default;
    AlignmentDataCopy(const AlignmentDataCopy&) = delete;
    AlignmentDataCopy& operator=(const AlignmentDataCopy&) = delete;
    ~AlignmentDataCopy() { SafeArrayDestroy(copy); }

    HRESULT CopyOf(SAFEARRAY* array) { return SafeArrayCopy(array, &copy); }
    SAFEARRAY** Address() noexcept { return &copy; }

private:
    SAFEARRAY* copy = nullptr;
};

/// Accesses the items of an array. The access ends with End() or with this object.
class AccessedItems {
public:
    explicit AccessedItems(SAFEARRAY* theArray) noexcept : array(theArray), result(Access()) {}
    AccessedItems(const AccessedItems&) = delete;
    AccessedItems& operator=(const AccessedItems&) = delete;
    ~AccessedItems() {
        if (SUCCEEDED(result)) SafeArrayUnaccessData(array);
    }

    HRESULT Result() const noexcept { return result; }
    /// Elements 0 to the upper bound, counted from the first one in memory. The lower bound is not used: required.
    std::span<HeadAlignmentDataItem> UpTo(LONG upperBound) const noexcept {
        if (items == nullptr || upperBound < 0) return {};
        return {static_cast<HeadAlignmentDataItem*>(items), static_cast<std::size_t>(upperBound) + 1};
    }
    HRESULT End() noexcept {
        result = E_UNEXPECTED; // so that the destructor does not end it again
        return SafeArrayUnaccessData(array);
    }

private:
    HRESULT Access() noexcept { return SafeArrayAccessData(array, &items); }

    SAFEARRAY* array;
    void* items = nullptr;
    HRESULT result;
};

LONG UpperBound(SAFEARRAY* array, const ErrorContext& context) {
    LONG bound = 0;
    RaiseIfFailed(SafeArrayGetUBound(array, 1, &bound), context);
    return bound;
}

/// Refuses an array that does not hold alignment records 0 to its upper bound, because reading it would go beyond its
/// memory.
void RaiseUnlessHoldingRecords(SAFEARRAY* array, LONG upperBound, const ErrorContext& context) {
    LONG lowerBound = 0;
    RaiseIfFailed(SafeArrayGetLBound(array, 1, &lowerBound), context);
    const bool isOfRecords =
        SafeArrayGetDim(array) == 1 && SafeArrayGetElemsize(array) == sizeof(HeadAlignmentDataItem);
    // The count is tested too: the upper bound of an empty array with the lowest possible lower bound wraps to the
    // highest.
    const bool holdsRecords =
        isOfRecords && lowerBound <= 0 && array->rgsabound[0].cElements > static_cast<ULONG>(upperBound);
    if (!holdsRecords) RaiseError(DISP_E_BADINDEX, context);
}

/// The angle that must be the same at every point of a set, and the texts with which the set is refused.
struct SetRules {
    double HeadAlignmentDataItem::*fixedAngle;
    const wchar_t* tooFewPoints;
    const wchar_t* fixedAngleMoved;
};

/// Checks one set. Stores its fixed angle before the access to the data ends, as required: if ending the access fails,
/// the check fails, but the angle is stored.
void ValidateSet(SAFEARRAY* points, const SetRules& rules, const ErrorContext& context, double& fixedAngle) {
    constexpr LONG smallestUpperBound = 3; // four points
    const LONG upperBound = UpperBound(points, context);
    if (upperBound < smallestUpperBound) RaiseError(QMV_E_TOO_FEW_POINTS, context.source, rules.tooFewPoints);
    RaiseUnlessHoldingRecords(points, upperBound, context);

    AccessedItems items(points);
    RaiseIfFailed(items.Result(), context);
    const double firstAngle = items.UpTo(upperBound).front().*rules.fixedAngle;
    for (const HeadAlignmentDataItem& item : items.UpTo(upperBound)) {
        // An exact comparison also refuses not-a-number.
        if (item.*rules.fixedAngle == firstAngle) continue;
        RaiseIfFailed(items.End(), context);
        RaiseError(QMV_E_FIXED_AXIS_MOVED, context.source, rules.fixedAngleMoved);
    }
    fixedAngle = firstAngle;
    RaiseIfFailed(items.End(), context);
}

} // namespace

void RoundThePole::ComputeGeometry(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints) {
    ErrorContext context{L"RoundThePole::ComputeGeometry"};
    ClearPointArrays();
    RaisingGeometryErrors(context, [&] { InitialiseFixedGeometry(); });

    context.description = L"Error Copying the safe array data.";
    AlignmentDataCopy aAxisData;
    RaiseIfFailed(aAxisData.CopyOf(*pAAxisPoints), context);
    AlignmentDataCopy bAxisData;
    RaiseIfFailed(bAxisData.CopyOf(*pBAxisPoints), context);

    ValidateSafeArrayData(aAxisData.Address(), bAxisData.Address());
    ModifyDataForLockedPosition(aAxisData.Address());
    ModifyDataForLockedPosition(bAxisData.Address());
    ClearPointArrays(); // a second time, as required
    AddDataToPointArrays(aAxisData.Address(), aAxisPoints);
    AddDataToPointArrays(bAxisData.Address(), bAxisPoints);

    RaisingGeometryErrors(context, [&] { PlaceHeadCentre(); });
    CalculateLeverGeometry();
    CalculateSafePositionZ();
    CalculateRotationFromIdealAlignment(aAxisPoints);
}

void RoundThePole::ClearPointArrays() {
    aAxisPoints.Clear();
    bAxisPoints.Clear();
}

void RoundThePole::ValidateSafeArrayData(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints) {
    const ErrorContext context{L"RoundThePole::ValidateSafeArrayData"};
    const SetRules aAxisRules{&HeadAlignmentDataItem::BPosition, L"Too Few A Axis Points Supplied",
                              L"Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture"};
    const SetRules bAxisRules{&HeadAlignmentDataItem::APosition, L"Too Few B Axis Points Supplied",
                              L"Invalid Data. A Axis Must Remain Fixed During B Axis Data Capture"};
    ValidateSet(*pAAxisPoints, aAxisRules, context, aAxisCaptureBPosition);
    double captureA = 0.0; // not stored: the axis of the B circle is the same at every A
    ValidateSet(*pBAxisPoints, bAxisRules, context, captureA);
}

void RoundThePole::ModifyDataForLockedPosition(SAFEARRAY** points) const {
    const ErrorContext context{L"RoundThePole::ModifyDataForLockedPosition"};
    const FixedOffset shift = RaisingGeometryErrors(context, [&] { return GetLockedToUnlockedOffset(); });
    AccessedItems items(*points);
    RaiseIfFailed(items.Result(), context);
    for (HeadAlignmentDataItem& item : items.UpTo(UpperBound(*points, context))) {
        item.XPosition -= shift.x;
        item.YPosition -= shift.y;
        item.ZPosition -= shift.z;
    }
    RaiseIfFailed(items.End(), context);
}

void RoundThePole::AddDataToPointArrays(SAFEARRAY** points, CMaPointArray& pointArray) const {
    const ErrorContext context{L"RoundThePole::AddDataToPointArrays"};
    RaisingGeometryErrors(context, [&] {
        // The results of the three array calls are not checked, as required: the same calls on the same array have just
        // succeeded.
        const AccessedItems items(*points);
        LONG upperBound = -1;
        SafeArrayGetUBound(*points, 1, &upperBound);
        for (const HeadAlignmentDataItem& item : items.UpTo(upperBound)) {
            AddAPoint(item.XPosition, item.YPosition, item.ZPosition, pointArray);
        }
    });
}

void RoundThePole::AddAPoint(double x, double y, double z, CMaPointArray& pointArray) const {
    // The text is fixed: it says A for the B set too.
    const ErrorContext context{L"RoundThePole::AddAPoint", L"Error Adding A Point to the A Point Collection"};
    RaisingGeometryErrors(context, [&] { pointArray.Add(CMaPoint(x, y, z)); });
}

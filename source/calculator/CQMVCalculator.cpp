#include "calculator/CQMVCalculator.h"

#include "calculator/TargetAngles.h"
#include "errors/Guarded.h"
#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

/// Raises E_POINTER with this `source` if one of `pointers` is null.
template <typename... Pointers> void RequirePointers(const wchar_t* source, Pointers*... pointers) {
    const bool anyNull = (... || (pointers == nullptr));
    if (anyNull) RaiseError(E_POINTER, source, L"A pointer passed to the method is null");
}

} // namespace

HRESULT CQMVCalculator::LoadHeadGeometryFromFile(BSTR* FileName) {
    return Guarded([&] {
        RequirePointers(L"CQMVCalculator::LoadHeadGeometryFromFile", FileName);
        headGeometry.LoadFromFile(FileName);
        geometryAvailable = true;
    });
}

HRESULT CQMVCalculator::SaveHeadGeometryToFile(BSTR* FileName) {
    return Guarded([&] {
        RequirePointers(L"CQMVCalculator::SaveHeadGeometryToFile", FileName);
        // No flag is checked, as required: the fields are written even if no geometry was ever supplied.
        headGeometry.SaveToFile(FileName);
    });
}

HRESULT CQMVCalculator::GetCurrentHeadPosition(double* APosition, double* BPosition) {
    constexpr const wchar_t* source = L"CQMVCalculator::GetCurrentHeadPosition";
    return Guarded([&] {
        if (!currentPositionKnown) RaiseError(QMV_E_POSITION_UNKNOWN, source, L"Current Position is not known");
        RequirePointers(source, APosition, BPosition);
        *APosition = currentA;
        *BPosition = currentB;
    });
}

HRESULT CQMVCalculator::SetCurrentHeadPosition(double APosition, double BPosition) {
    const HRESULT result = Guarded([&] {
        ValidateMoveTarget(APosition, BPosition);
        currentA = APosition;
        currentB = BPosition;
    });
    // After a refused position the current position counts as unknown. The stored angles stay.
    currentPositionKnown = SUCCEEDED(result);
    return result;
}

// Must not be inlined, not even into GetStartPosition: the return address would then be in another caller.
[[gnu::noinline]] HRESULT CQMVCalculator::CalculateMove(double TargetAPosition, double TargetBPosition,
                                                        RequiredMoves* Moves) {
    const HRESULT planned = Guarded([&] {
        const ErrorContext context{L"CQMVCalculator::CalculateMove"};
        RaisingGeometryErrors(context, [&] {
            RequirePlannable();
            const double targetA = RoundToWholeDegree(TargetAPosition);
            const double targetB = RoundToWholeDegree(TargetBPosition);
            ValidateMoveTarget(targetA, targetB);
            RequirePointers(context.source, Moves);
            PlanMoves(targetA, targetB, *Moves);
            currentA = targetA;
            currentB = targetB;
        });
    });
    // This method is required to throw its failure code. Guarded catches the code first, so that all destructors have
    // run and the caller's floating-point state is restored. Then the code is thrown again, as the kind of exception
    // that the caller catches.
    if (FAILED(planned)) ThrowRecordedCode(planned, __builtin_return_address(0));
    return S_OK;
}

void CQMVCalculator::RequirePlannable() const {
    constexpr const wchar_t* source = L"CQMVCalculator::CalculateMove";
    if (!geometryAvailable) {
        RaiseError(QMV_E_NO_HEAD_GEOMETRY, source, L"Head Geometry has not been supplied and/or loaded");
    }
    if (!currentPositionKnown) RaiseError(QMV_E_POSITION_UNKNOWN, source, L"Current Position is not known");
}

HRESULT CQMVCalculator::EnterHeadGeometry(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints) {
    return Guarded([&] {
        RequirePointers(L"CQMVCalculator::EnterHeadGeometry", pAAxisPoints, pBAxisPoints);
        headGeometry.ComputeGeometry(pAAxisPoints, pBAxisPoints);
        geometryAvailable = true;
    });
}

HRESULT CQMVCalculator::GetStartPosition(XYZData* StartPosition) {
    HRESULT planned = S_OK;
    const HRESULT caught = Guarded([&] {
        RequiredMoves moves{};
        // Called through the interface, as required: a class that replaces CalculateMove replaces it here too.
        IQMVCalculator& ownEntry = *this;
        // A null output is passed on as a null record: CalculateMove then fails after its own checks, and the stored
        // position is not rounded, which happens on success only.
        planned = ownEntry.CalculateMove(currentA, currentB, StartPosition != nullptr ? &moves : nullptr);
        if (SUCCEEDED(planned) && StartPosition != nullptr) *StartPosition = moves.ApproachUnLockLever;
    });
    return FAILED(caught) ? caught : planned;
}

HRESULT CQMVCalculator::GetPoleSpherePosition(XYZData* PoleSpherePosition) {
    return Guarded([&] {
        RequirePointers(L"CQMVCalculator::GetPoleSpherePosition", PoleSpherePosition);
        const CMaVector& centre = headGeometry.HeadCentre();
        *PoleSpherePosition = {centre[0], centre[1], centre[2]};
    });
}

HRESULT CQMVCalculator::InterfaceSupportsErrorInfo(REFIID iid) { return iid == IID_IQMVCalculator ? S_OK : S_FALSE; }

void* CQMVCalculator::FindInterface(REFIID iid) noexcept {
    if (iid == IID_IQMVCalculator) return static_cast<IQMVCalculator*>(this);
    if (iid == IID_IQMVCalculator2) return static_cast<IQMVCalculator2*>(this);
    if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    return nullptr;
}

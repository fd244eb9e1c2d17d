#pragma once

#include "interface/IQMVCalculator.h"
#include "planning/MovePlanner.h"

/// The calculator: the automation interface of the head geometry and the planner, with two flags. It belongs to one
/// apartment and has no locks. The class that wraps it adds identity and lifetime (CreatableObjects.h).
class CQMVCalculator : public IQMVCalculator2, public ISupportErrorInfo, protected qmv40::MovePlanner {
public:
    CQMVCalculator(const CQMVCalculator&) = delete;
    CQMVCalculator& operator=(const CQMVCalculator&) = delete;

    HRESULT STDMETHODCALLTYPE LoadHeadGeometryFromFile(BSTR* FileName) override;
    HRESULT STDMETHODCALLTYPE SaveHeadGeometryToFile(BSTR* FileName) override;
    HRESULT STDMETHODCALLTYPE GetCurrentHeadPosition(double* APosition, double* BPosition) override;
    HRESULT STDMETHODCALLTYPE SetCurrentHeadPosition(double APosition, double BPosition) override;
    /// Throws its failure code instead of returning it, as required, unlike the other seven methods.
    HRESULT STDMETHODCALLTYPE CalculateMove(double TargetAPosition, double TargetBPosition,
                                            RequiredMoves* Moves) override;
    HRESULT STDMETHODCALLTYPE EnterHeadGeometry(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints) override;
    HRESULT STDMETHODCALLTYPE GetStartPosition(XYZData* StartPosition) override;
    HRESULT STDMETHODCALLTYPE GetPoleSpherePosition(XYZData* PoleSpherePosition) override;

    /// S_OK for the first interface only, as required, although the second one's method sets the error record too.
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

    /// The interface whose pointer is the object's identity.
    static constexpr const IID& PrimaryInterface = IID_IQMVCalculator;

protected:
    CQMVCalculator() = default;
    ~CQMVCalculator() = default;

    /// The pointer to interface `iid` of this object; null if the class does not have it. IQMVCalculator and
    /// IQMVCalculator2 have the same pointer.
    void* FindInterface(REFIID iid) noexcept;

private:
    void RequirePlannable() const;

    bool geometryAvailable = false; // never false again: a geometry can be replaced, but not removed
    bool currentPositionKnown = false;
};

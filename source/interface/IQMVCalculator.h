#pragma once

#include "interface/Identifiers.h"
#include "interface/Records.h"
#include "platform/Automation.h"

/// The calculator's interface. Create a calculator with CoCreateInstance(CLSID_QMVCalculator, ...), enter or load the
/// head geometry, set the current head position, and calculate moves.
///
/// Angles in degrees: A (tilt) 0 to 90, B (swivel) -180 to 180, both in steps of 15. Lengths in the unit of the
/// captured points.
///
/// Every method returns an HRESULT; only CalculateMove throws its failure code instead of returning it. A failing
/// method leaves the thread's error record (source, description). When memory runs out (E_OUTOFMEMORY) there may be
/// no record: a record of an earlier failure is removed. Out parameters are written on success only, except the record
/// of CalculateMove, which is filled step by step. A null pointer is E_POINTER, after the checks of the state and of
/// the angles.
struct IQMVCalculator : DualInterfaceBase {
    /// Replaces the head geometry by the one saved in `FileName`.
    virtual HRESULT STDMETHODCALLTYPE LoadHeadGeometryFromFile(BSTR* FileName) = 0;
    /// Saves the object's geometry into `FileName`. The numbers of a new object are zero.
    virtual HRESULT STDMETHODCALLTYPE SaveHeadGeometryToFile(BSTR* FileName) = 0;
    /// The head's A and B after the last SetCurrentHeadPosition or CalculateMove.
    virtual HRESULT STDMETHODCALLTYPE GetCurrentHeadPosition(double* APosition, double* BPosition) = 0;
    /// Sets the head's A and B. If they are refused, the position is unknown.
    virtual HRESULT STDMETHODCALLTYPE SetCurrentHeadPosition(double APosition, double BPosition) = 0;
    /// The moves that index the head from its current position to the target, which becomes the current position.
    /// Targets are rounded to whole degrees first. THROWS its failure code (an HRESULT): there is no returned failure.
    virtual HRESULT STDMETHODCALLTYPE CalculateMove(double TargetAPosition, double TargetBPosition,
                                                    RequiredMoves* Moves) = 0;
    /// Computes the head geometry from two arrays of HeadAlignmentDataItem: points captured while A alone was turned,
    /// then while B alone was turned; at least four each, elements indexed from 0.
    virtual HRESULT STDMETHODCALLTYPE EnterHeadGeometry(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints) = 0;
    /// The first point of any indexing from the current position. The stored position is rounded to whole degrees. What
    /// the object's own CalculateMove throws is returned here.
    virtual HRESULT STDMETHODCALLTYPE GetStartPosition(XYZData* StartPosition) = 0;

protected:
    ~IQMVCalculator() = default; // lifetime belongs to Release
};

struct IQMVCalculator2 : IQMVCalculator {
    /// The head centre of the geometry: the centre of the pole sphere, in machine coordinates.
    virtual HRESULT STDMETHODCALLTYPE GetPoleSpherePosition(XYZData* PoleSpherePosition) = 0;

protected:
    ~IQMVCalculator2() = default;
};

#pragma once

#include "tools/captures/CapturedPoint.h"
#include "tools/diagnosis/Explanation.h"
#include "tools/diagnosis/Finding.h"
#include "tools/diagnosis/Influence.h"
#include "tools/diagnosis/Thresholds.h"

namespace qmv40::diagnosis {

/// The input of a diagnosis: a capture that the component accepted, and the component's result.
struct CaptureUnderTest {
    captures::CapturedSets sets;
    double rotation = 0.0; ///< RequiredRotationAroundZ, degrees
    double centreWithin = thresholds::centreWithin;
    std::optional<model::Vector3> headCentre = std::nullopt;  ///< as the component computed it
    model::Vector3 unlocking = {};                            ///< the shift that was taken off the points
    std::optional<model::Vector3> knownSphere = std::nullopt; ///< as it was measured with a qualified tip
    std::optional<double> knownStylus = std::nullopt;         ///< the length of the stylus
};

struct Diagnosis {
    fit::AxisCircle aCircle;
    fit::AxisCircle bCircle;
    NoiseFigures noise;
    fit::HeadAxes axes;
    /// The second opinion. Its model has the mistakes that were found, and the errors of the head.
    fit::HeadFit head;
    std::optional<Rewriting> rewriting; ///< how the columns were rewritten before `head` was fitted
    double rotationDifference; ///< the component's rotation minus the fitted mounting angle, degrees, -180 to 180
    std::vector<PointDiagnosis> points;
    std::vector<Finding> findings; ///< the gravest first

    /// The standard deviation of an unknown of `head`, widened. `variance`: that of the unknown for noise of standard
    /// deviation 1.
    double StandardDeviationByFit(double variance) const;
    double MountingStandardDeviation() const; ///< degrees
};

/// Empty when a circle or the head cannot be fitted: the component refuses such points too, or squares of the numbers
/// overflow.
std::optional<Diagnosis> Diagnose(const CaptureUnderTest& capture);

/// All that is found in a capture, and the diagnosis.
struct Judgement {
    std::vector<Finding> findings;
    std::optional<Diagnosis> diagnosis; ///< empty: the sets determine no head, or the numbers are too large
};
Judgement JudgeCapture(const CaptureUnderTest& capture);

} // namespace qmv40::diagnosis

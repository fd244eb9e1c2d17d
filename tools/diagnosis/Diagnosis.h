#pragma once

#include "tools/diagnosis/AxisCircle.h"
#include "tools/diagnosis/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"
#include "tools/diagnosis/HeadAxes.h"
#include "tools/diagnosis/HeadFit.h"
#include "tools/diagnosis/Rewriting.h"
#include "tools/diagnosis/Thresholds.h"

namespace qmv40::diagnosis {

/// What is to be judged: a capture that the component accepted, and what it made of it.
struct CaptureUnderTest {
    CapturedSets sets;
    double rotation = 0.0; ///< RequiredRotationAroundZ, degrees
    double centreWithin = thresholds::centreWithin;
    std::optional<model::Vector3> headCentre = std::nullopt;  ///< as the component computed it
    model::Vector3 unlocking = {};                            ///< the shift that was taken off the points
    std::optional<model::Vector3> knownSphere = std::nullopt; ///< as it was measured with a qualified tip
    std::optional<double> knownStylus = std::nullopt;         ///< the length of the stylus
};

/// What becomes of the head when one point is left out.
struct Influence {
    double centreShift;   ///< how far the head centre moves
    double rotationShift; ///< by how much the rotation changes, degrees
    double pValue;        ///< how often noise alone would set the point so far off the circle of the others
};

struct PointDiagnosis {
    CirclePoint onCircle;
    double offPlace;                    ///< from where its angles put it on the fitted head
    std::optional<Influence> influence; ///< none where too few points would be left
};

/// The noise in one coordinate of a point, as both circles show it together; as each shows it for itself where the two
/// are surely not the same.
struct NoiseFigures {
    PointNoise perSet;
    int degreesOfFreedom;
    bool isUneven;
};

struct Diagnosis {
    AxisCircle aCircle;
    AxisCircle bCircle;
    NoiseFigures noise;
    HeadAxes axes;
    HeadFit head;              ///< the second opinion, with what it takes for mistakes
    Rewriting rewriting;       ///< the capture read otherwise, which `head` then is of
    double rotationDifference; ///< the component's rotation less the fitted mounting angle, degrees, -180 to 180
    std::vector<PointDiagnosis> points;
    std::vector<Finding> findings; ///< the gravest first

    bool Has(Severity severity) const;
};

/// Nothing where a circle or the head cannot be fitted: the component will have refused such points, or numbers are so
/// large that squares of them are none.
std::optional<Diagnosis> Diagnose(const CaptureUnderTest& capture);

} // namespace qmv40::diagnosis

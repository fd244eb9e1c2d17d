// The head centre: the point of the fitted B axis that is nearest to the fitted A axis.

#include "head/RoundThePole.h"

#include "maths/CMaPlane.h"
#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

void RoundThePole::PlaceHeadCentre() {
    const std::unique_ptr<CMaCircle> circleB = FitPointsToACircle(bAxisPoints);
    const CMaVector normalB = circleB->GetNormal();
    const std::unique_ptr<CMaCircle> circleA = FitPointsToACircle(aAxisPoints);
    const CMaVector normalA = circleA->GetNormal();
    // The reversal is required; it cancels out below, as does the sign of either normal.
    const CMaVector directionA = normalA * -1.0;
    const std::unique_ptr<CMaVector> centreA = GetCircleCentre(*circleA);
    const std::unique_ptr<CMaVector> centreB = GetCircleCentre(*circleB);

    const CMaVector between = *centreB + *centreA * -1.0;
    const CMaVector numerator = between * directionA;
    const CMaVector common = normalB * directionA;
    const double length = common.Magnitude();
    const double along = -(numerator % common) / (length * length);
    // Parallel axes have no nearest point. The division is not guarded: it gives a centre that is not finite, which the
    // line fit of the alignment correction refuses.
    headCentre = *centreB + normalB * along;
}

std::unique_ptr<CMaCircle> RoundThePole::FitPointsToACircle(const CMaPointArray& points) const {
    constexpr double radiusBeforeFit = 1.0;  // no effect on the fit
    constexpr long evaluationLimit = 200000; // never reached: no fit needs more than 5,000 (CMaCircle.h)
    const ErrorContext context{L"RoundThePole::FitPointsToACircle", L"Error Fitting points to a circle"};
    return RaisingGeometryErrors(context, [&] {
        CMaPlane plane;
        plane.Fit(points);
        // The projections are required although they have no effect: each is assigned to a copy of the point, so the
        // circle is fitted to the points themselves, as the array holds them.
        for (int i = 0; i < points.GetSize(); ++i) {
            CMaPoint copy = points[i];
            copy = copy.ProjectionOn(plane);
        }
        auto circle = std::make_unique<CMaCircle>(radiusBeforeFit);
        circle->Fit(points, evaluationLimit);
        return circle;
    });
}

std::unique_ptr<CMaVector> RoundThePole::GetCircleCentre(const CMaCircle& circle) const {
    const ErrorContext context{L"RoundThePole::GetCircleCentre"};
    return RaisingGeometryErrors(context, [&] { return std::make_unique<CMaVector>(circle.GetCentre().To3DVector()); });
}

// The rotation of the head about the machine's Z axis from its ideal alignment, and the rotation of the model by it.

#include "head/RoundThePole.h"

#include "errors/RaiseError.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "maths/RaisingGeometryErrors.h"

#include <algorithm>

using namespace qmv40;

void RoundThePole::CalculateRotationFromIdealAlignment(const CMaPointArray& aPoints) {
    ErrorContext context{L"RoundThePole::CalculateRotationFromIdealAlignment"};
    const double angleToPlane = RaisingGeometryErrors(context, [&] {
        CMaPlane plane;
        CMaPointArray linePoints(0);
        CMaLine line;
        // The text is fixed: it says circle although a plane is fitted.
        context.description = L"Error Fitting points to a circle";
        plane.Fit(aPoints);

        context.description = L"Error Adding Points To Point Array";
        linePoints.Add(CMaPoint(headCentre[0], headCentre[1], headCentre[2]));
        linePoints.Add(CMaPoint(headCentre[0], headCentre[1] - 10.0, headCentre[2]));

        context.description = L"Error Fitting Line Through Point Array";
        line.Fit(linePoints);

        context.description = L"Error Calculating Angle with Plane";
        return line.AngleWith(plane);
    });

    const int quadrant = DetermineQuadrant(aPoints);
    double angle = quadrant == 1 || quadrant == 4 ? 180.0 - angleToPlane : angleToPlane;
    if (quadrant == 3 || quadrant == 4) angle = -angle;
    // During the capture of the A set the head was turned by its B angle. The correction is for B = 0.
    requiredRotationAroundZ = angle - aAxisCaptureBPosition;
    AdjustForMisAlignment(requiredRotationAroundZ, CMaGeometry::EAxisType::Z);
}

int RoundThePole::DetermineQuadrant(const CMaPointArray& aPoints) const {
    const ErrorContext context{L"RoundThePole::DetermineQuadrant"};
    constexpr double margin = 10.0; // in the unit of the points
    // Inside: no point is more than the margin beyond the head centre, in the positive direction of the axis.
    bool xInside = true;
    bool yInside = true;
    RaisingGeometryErrors(context, [&] {
        for (int i = 0; i < aPoints.GetSize(); ++i) {
            const CMaPoint point = aPoints[i];
            if (point.x() > headCentre[0] + margin) xInside = false;
            if (point.y() > headCentre[1] + margin) yInside = false;
        }
    });
    if (xInside && yInside) return 1;
    if (xInside && !yInside) return 2;
    if (!xInside && !yInside) return 3;
    if (!xInside && yInside) return 4;
    // Required as a guard, although the four lines above cover every case.
    RaiseError(QMV_E_INVALID_QUADRANT, context.source, L"Invalid Quadrant calculated");
}

void RoundThePole::AdjustForMisAlignment(double angleDegrees, CMaGeometry::EAxisType axis) {
    const ErrorContext context{L"RoundThePole::AdjustForMisAlignment"};
    const CMaPoint origin(0.0, 0.0, 0.0);
    // Directions and offsets turn about the origin. The head centre does not turn: the position queries add it.
    const auto turn = [&](CMaVector& vector) { vector.Rotate(angleDegrees, axis, origin); };
    RaisingGeometryErrors(context, [&] {
        for (CMaVector* const vector : {&approachDirection, &driveCupOffset, &aAxis, &bAxis}) turn(*vector);
        for (auto* const pair :
             {&leverCentreOffset, &leverLockedOffset, &leverLockedApproachOffset, &leverUnlockingCentreOffset,
              &leverUnlockedOffset, &leverUnlockedApproachOffset, &leverLockingCentreOffset, &leverAxisOfRotation})
            std::ranges::for_each(*pair, turn);
    });
}

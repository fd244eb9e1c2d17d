#include "tools/check/obstacles/Sweep.h"

#include <algorithm>
#include <queue>

namespace qmv40::check::obstacles {

namespace {

// The error of a computed distance is about 1e-9 mm. A hundred times that is subtracted from a bound.
constexpr double roundings = 1e-7; // mm
// Far more than any move needs. A bound that is not tight yet is still a valid bound.
constexpr int mostDivisions = 200'000;

struct Moment {
    double fraction;
    Axis axis;
};

struct Stretch {
    Moment start;
    Moment end;
    double atLeast; ///< lower bound of the clearance in it
    double error;   ///< by how much at most the true clearance exceeds `atLeast`

    bool operator>(const Stretch& other) const { return atLeast > other.atLeast; }
};

bool IsFinite(const Axis& axis) { return IsFinite(axis.from) && IsFinite(axis.to); }

bool IsOnePoint(const model::Vector3& left, const model::Vector3& right) { return model::Distance(left, right) == 0.0; }

/// How far the axis can leave the two triangles because it turns. When both ends move and the four end points do not
/// form a parallelogram, the surface between them is curved: by at most a quarter of what is missing to the
/// parallelogram.
double TwistBetween(const Axis& start, const Axis& end) {
    if (IsOnePoint(start.from, end.from) || IsOnePoint(start.to, end.to)) return 0.0;
    return 0.25 * model::Length((end.to - start.to) - (end.from - start.from));
}

class Sweep {
public:
    Sweep(const MovingPart& thePart, const Solid& theSolid, double theEnough)
        : part(thePart), solid(theSolid), enough(theEnough) {}

    double Clearance() {
        const Moment start = At(0.0);
        const Moment end = At(1.0);
        if (!IsFinite(start.axis) || !IsFinite(end.axis)) return std::numeric_limits<double>::quiet_NaN();
        if (solid.Contains(start.axis.from)) {
            const model::Vector3& point = start.axis.from;
            return -part.radius - solid.DistanceTo({point, point, point}, std::numeric_limits<double>::infinity());
        }
        Add(start, end);
        for (int i = 0; i < mostDivisions; ++i) {
            if (IsSettled(stretches.top())) break;
            DivideFirst();
        }
        return stretches.top().atLeast - roundings;
    }

private:
    Moment At(double fraction) const { return {fraction, part.at(fraction)}; }

    bool IsSettled(const Stretch& first) const {
        return first.atLeast >= enough || first.error <= clearanceTolerance ||
               atMost - first.atLeast <= clearanceTolerance;
    }

    void Add(const Moment& start, const Moment& end) {
        const double length = end.fraction - start.fraction;
        // The ends of the axis leave their chords by at most an eighth of the second derivative times the squared
        // length.
        const double off = part.bend * length * length / 8.0 + TwistBetween(start.axis, end.axis);
        const double wanted = std::min(enough, atMost) + off + part.radius;
        double distance = solid.DistanceTo({start.axis.from, start.axis.to, end.axis.to}, wanted);
        if (!IsOnePoint(start.axis.from, end.axis.from) && !IsOnePoint(end.axis.from, end.axis.to)) {
            distance = std::min(distance, solid.DistanceTo({start.axis.from, end.axis.to, end.axis.from}, wanted));
        }
        if (distance < wanted) atMost = std::min(atMost, distance + off - part.radius);
        const double keptByAxis = std::max(distance - off, solid.SmallestDistance());
        stretches.push({start, end, keptByAxis - part.radius, 2.0 * off});
    }

    void DivideFirst() {
        const Stretch first = stretches.top();
        stretches.pop();
        const Moment middle = At(0.5 * (first.start.fraction + first.end.fraction));
        const double there = solid.DistanceTo({middle.axis.from, middle.axis.to, middle.axis.to}, atMost + part.radius);
        atMost = std::min(atMost, there - part.radius);
        Add(first.start, middle);
        Add(middle, first.end);
    }

    const MovingPart& part;
    const Solid& solid;
    double enough;
    double atMost = std::numeric_limits<double>::infinity();                      ///< upper bound of the true clearance
    std::priority_queue<Stretch, std::vector<Stretch>, std::greater<>> stretches; ///< the smallest bound on top
};

} // namespace

double ClearanceOf(const MovingPart& part, const Solid& solid, double enough) {
    const double atLeast = Sweep(part, solid, enough + roundings).Clearance();
    // Rounding errors must not make the result smaller than `enough`.
    return atLeast >= enough - 0.01 * roundings ? std::max(atLeast, enough) : atLeast;
}

} // namespace qmv40::check::obstacles

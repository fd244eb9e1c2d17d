#include "benchmarks/peers/HandWrittenPlan.h"

#include <Eigen/Geometry>

namespace {

struct EigenLibrary {
    using Vector = Eigen::Vector3d;
    using Rotation = Eigen::Quaterniond;
    static Rotation Turn(const Vector& unitAxis, double radians) {
        return Rotation(Eigen::AngleAxisd(radians, unitAxis));
    }
};

} // namespace

std::unique_ptr<PlanPeer> PlanPeer::OnEigen(const RoundThePole& head) {
    return std::make_unique<HandWrittenPlan<EigenLibrary>>(head);
}

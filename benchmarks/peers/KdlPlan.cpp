#include "benchmarks/peers/HandWrittenPlan.h"

#include <kdl/frames.hpp>

namespace {

struct KdlLibrary {
    using Vector = KDL::Vector;
    using Rotation = KDL::Rotation;
    static Rotation Turn(const Vector& unitAxis, double radians) { return Rotation::Rot2(unitAxis, radians); }
};

} // namespace

std::unique_ptr<PlanPeer> PlanPeer::OnKdl(const RoundThePole& head) {
    return std::make_unique<HandWrittenPlan<KdlLibrary>>(head);
}

#pragma once

namespace qmv40 {

/// Thrown by a geometric operation that has no result. The vector-geometry classes throw nothing else, except
/// std::bad_alloc where points are stored.
class GeometryError {
public:
    enum class Reason {
        Impossible,  ///< too few points, all on one line or in one place, a coordinate that is not finite, a bad index
        LimitReached ///< a fit has used up its evaluations
    };

    explicit GeometryError(Reason theReason) noexcept : reason(theReason) {}
    Reason GetReason() const noexcept { return reason; }

private:
    Reason reason;
};

} // namespace qmv40

#pragma once

#include "errors/RaiseError.h"
#include "maths/GeometryError.h"

#include <new>

namespace qmv40 {

/// The bridge from the vector-geometry classes, which know nothing of error codes, to RaiseError: runs `step` and
/// returns what it returns. A GeometryError that leaves the step, and memory that runs out in it, are raised as codes
/// with the source and the description that `context` has at that moment. Codes that were raised inside pass through.
///
///     RaisingGeometryErrors(context, [&] {
///         context.description = L"Error Fitting points to a circle";
///         plane.Fit(points);
///     });
template <typename Step> decltype(auto) RaisingGeometryErrors(const ErrorContext& context, Step&& step) {
    try {
        return step();
    } catch (const GeometryError& failure) {
        const bool isImpossible = failure.GetReason() == GeometryError::Reason::Impossible;
        RaiseError(isImpossible ? QMV_E_GEOMETRY_IMPOSSIBLE : QMV_E_GEOMETRY_LIMIT_REACHED, context);
    } catch (const std::bad_alloc&) {
        RaiseError(E_OUTOFMEMORY, context);
    }
}

} // namespace qmv40

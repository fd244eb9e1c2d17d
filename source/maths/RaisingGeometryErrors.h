#pragma once

#include "errors/RaiseError.h"
#include "maths/GeometryError.h"

#include <new>

namespace qmv40 {

/// Runs `step` and returns its result. The vector-geometry classes do not know error codes: if the step throws a
/// GeometryError or std::bad_alloc, it is raised here as a code, with the source and the description that `context` has
/// at that moment. A code that was raised inside the step passes through.
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

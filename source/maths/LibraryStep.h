#pragma once

#include "errors/RaiseError.h"
#include "maths/GeometryError.h"

#include <new>

/// Runs a step that uses the vector-geometry library on behalf of `context`. Its failure, or memory running out, is
/// raised with the source and the description that stand in the context at that moment. Returns what the step returns.
template <typename Step> decltype(auto) LibraryStep(const ErrorContext& context, Step&& step) {
    try {
        return step();
    } catch (const GeometryError& failure) {
        const bool impossible = failure.GetReason() == GeometryError::Reason::Impossible;
        RaiseError(impossible ? QMV_E_GEOMETRY_IMPOSSIBLE : QMV_E_GEOMETRY_LIMIT_REACHED, context);
    } catch (const std::bad_alloc&) {
        RaiseError(E_OUTOFMEMORY, context);
    }
}

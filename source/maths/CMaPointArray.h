#pragma once

#include "maths/CMaPoint.h"

#include <cstddef>
#include <span>
#include <vector>

/// Points in the order in which they were added. Coordinates that are not finite are stored too; the fits refuse them.
/// The only CMa class that allocates: adding throws std::bad_alloc, with the array unchanged, when memory runs out.
class CMaPointArray : public CMaObject {
public:
    /// An empty array with room for `capacity` points; a negative capacity counts as 0.
    explicit CMaPointArray(int capacity = 0);

    void Add(const CMaPoint& point);
    void Clear() noexcept;
    int GetSize() const noexcept { return static_cast<int>(xs.size()); }

    /// Deliberately a copy of the point: an assignment to the result does not change the array.
    /// An index outside 0 to GetSize() - 1 throws GeometryError (Impossible).
    CMaPoint operator[](int index) const {
        if (index < 0 || index >= GetSize()) throw qmv40::GeometryError(qmv40::GeometryError::Reason::Impossible);
        const auto at = static_cast<std::size_t>(index);
        return {xs[at], ys[at], zs[at]};
    }

    // The coordinates for the fits, one array of doubles per axis. Valid until the array changes.
    std::span<const double> X() const noexcept { return xs; }
    std::span<const double> Y() const noexcept { return ys; }
    std::span<const double> Z() const noexcept { return zs; }

private:
    std::vector<double> xs, ys, zs;
};

#include "maths/CMaPointArray.h"

#include <algorithm>

using namespace qmv40;

CMaPointArray::CMaPointArray(int capacity) {
    const auto room = static_cast<std::size_t>(std::max(capacity, 0));
    for (auto* axis : {&xs, &ys, &zs}) axis->reserve(room);
}

void CMaPointArray::Add(const CMaPoint& point) {
    // All three arrays get their memory first, so that a failure leaves them with equal sizes.
    if (xs.size() == xs.capacity() || ys.size() == ys.capacity() || zs.size() == zs.capacity()) {
        const std::size_t room = std::max<std::size_t>(16, 2 * xs.size());
        for (auto* axis : {&xs, &ys, &zs}) axis->reserve(room);
    }
    xs.push_back(point.x());
    ys.push_back(point.y());
    zs.push_back(point.z());
}

void CMaPointArray::Clear() noexcept {
    for (auto* axis : {&xs, &ys, &zs}) axis->clear();
}

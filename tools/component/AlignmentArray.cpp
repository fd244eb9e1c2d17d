#include "tools/component/AlignmentArray.h"

#include <algorithm>
#include <new>

namespace qmv40::component {

AlignmentArray::AlignmentArray(std::span<const HeadAlignmentDataItem> items) {
    if (FAILED(SafeArrayAllocDescriptor(1, &array))) throw std::bad_alloc();
    array->cbElements = sizeof(HeadAlignmentDataItem);
    array->rgsabound[0] = {static_cast<ULONG>(items.size()), 0};
    if (FAILED(SafeArrayAllocData(array))) {
        SafeArrayDestroy(array);
        throw std::bad_alloc();
    }
    std::ranges::copy(items, static_cast<HeadAlignmentDataItem*>(array->pvData));
}

AlignmentArray::~AlignmentArray() { SafeArrayDestroy(array); }

} // namespace qmv40::component

#pragma once

#include "interface/Records.h"
#include "platform/Automation.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

/// A safe array of alignment points as a client passes it to EnterHeadGeometry: one dimension, indexed from 0, elements
/// of 40 bytes. The functions With... and Null make arrays of other shapes.
class AlignmentArray {
public:
    explicit AlignmentArray(const std::vector<HeadAlignmentDataItem>& items)
        : AlignmentArray(items, sizeof(HeadAlignmentDataItem), 1, 0) {}
    /// Any shape: the points along the dimension that is stored last, with the bytes of them that fit into an element.
    AlignmentArray(const std::vector<HeadAlignmentDataItem>& items, ULONG elementSize, USHORT dimensions,
                   LONG lowerBound) {
        if (FAILED(SafeArrayAllocDescriptor(dimensions, &array))) throw std::runtime_error("no safe array");
        array->cbElements = elementSize;
        SAFEARRAYBOUND* const bounds = array->rgsabound;
        std::fill(bounds, bounds + dimensions, SAFEARRAYBOUND{1, 0});
        // Bounds are stored last dimension first, so this is dimension 1, the one whose upper bound is asked for.
        bounds[dimensions - 1] = {static_cast<ULONG>(items.size()), lowerBound};
        if (FAILED(SafeArrayAllocData(array))) throw std::runtime_error("no memory for the safe array");
        const std::size_t copied = std::min<std::size_t>(elementSize, sizeof(HeadAlignmentDataItem));
        for (std::size_t i = 0; i < items.size(); ++i)
            std::memcpy(static_cast<char*>(array->pvData) + i * elementSize, &items[i], copied);
    }
    AlignmentArray(AlignmentArray&& other) noexcept : array(std::exchange(other.array, nullptr)) {}
    AlignmentArray& operator=(AlignmentArray&&) = delete;
    ~AlignmentArray() { SafeArrayDestroy(array); }

    SAFEARRAY** Address() noexcept { return &array; }
    SAFEARRAY* Get() const noexcept { return array; }

    /// The points in the array. For arrays of one dimension and 40-byte elements.
    std::vector<HeadAlignmentDataItem> Items() const {
        std::vector<HeadAlignmentDataItem> items(array->rgsabound[0].cElements);
        const std::size_t size = items.size() * sizeof(HeadAlignmentDataItem);
        if (size != 0) std::memcpy(items.data(), array->pvData, size);
        return items;
    }

    /// The same points, with the first index `lowerBound`.
    static AlignmentArray WithLowerBound(const std::vector<HeadAlignmentDataItem>& items, LONG lowerBound) {
        return AlignmentArray(items, sizeof(HeadAlignmentDataItem), 1, lowerBound);
    }
    /// One element of `elementSize` bytes for each point, with the bytes of the point that fit into it.
    static AlignmentArray WithElementSize(const std::vector<HeadAlignmentDataItem>& items, ULONG elementSize) {
        return AlignmentArray(items, elementSize, 1, 0);
    }
    /// The points along the last-stored dimension; every other dimension has one index.
    static AlignmentArray WithDimensions(const std::vector<HeadAlignmentDataItem>& items, USHORT dimensions) {
        return AlignmentArray(items, sizeof(HeadAlignmentDataItem), dimensions, 0);
    }
    /// A null array: Address() points to a null pointer.
    static AlignmentArray Null() noexcept { return AlignmentArray(); }

private:
    AlignmentArray() noexcept = default;
    SAFEARRAY* array = nullptr;
};

#pragma once

#include "interface/IQMVCalculator.h"

#include <span>

namespace qmv40::component {

/// Captured points in the form that the interface takes: an array of one dimension, indexed from 0.
class AlignmentArray {
public:
    explicit AlignmentArray(std::span<const HeadAlignmentDataItem> items);
    AlignmentArray(const AlignmentArray&) = delete;
    AlignmentArray& operator=(const AlignmentArray&) = delete;
    ~AlignmentArray();

    SAFEARRAY** Address() noexcept { return &array; }

private:
    SAFEARRAY* array = nullptr;
};

} // namespace qmv40::component

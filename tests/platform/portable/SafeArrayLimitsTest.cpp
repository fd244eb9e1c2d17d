#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

/// Descriptors of more elements than any memory has. (Not all implementations of these arrays check them.)

namespace {

constexpr ULONG most = std::numeric_limits<ULONG>::max();

SAFEARRAY* Descriptor(ULONG elementSize, const std::vector<ULONG>& counts) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(SafeArrayAllocDescriptor(static_cast<UINT>(counts.size()), &array), S_OK);
    array->cbElements = elementSize;
    SAFEARRAYBOUND* const bounds = array->rgsabound;
    for (std::size_t i = 0; i < counts.size(); ++i) bounds[i] = {counts[i], 0};
    return array;
}

TEST(SafeArrayLimits, RefuseSizesThatOverflow) {
    const struct {
        ULONG elementSize;
        std::vector<ULONG> counts;
        const char* why;
    } cases[] = {
        {1U << 20, {1U << 22, 1U << 22}, "wraps to 0"},
        {40, {most, most}, "wraps round"},
        {most, {most}, "does not overflow but is larger than any memory"},
        {8, {most, most, most, most}, "wraps more than once"},
    };
    for (const auto& [elementSize, counts, why] : cases) {
        SAFEARRAY* const array = Descriptor(elementSize, counts);
        EXPECT_EQ(SafeArrayAllocData(array), E_OUTOFMEMORY) << why;
        EXPECT_EQ(array->pvData, nullptr) << why;
        SAFEARRAY* copy = array;
        EXPECT_EQ(SafeArrayCopy(array, &copy), E_OUTOFMEMORY) << why;
        EXPECT_EQ(copy, nullptr) << why;
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    }
}

TEST(SafeArrayLimits, RefuseANullPointerForABound) {
    SAFEARRAY* const array = Descriptor(8, {1});
    EXPECT_EQ(SafeArrayGetLBound(array, 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetUBound(array, 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArrayLimits, WrapImpossibleBounds) {
    SAFEARRAY* const array = Descriptor(8, {most});
    array->rgsabound[0].lLbound = std::numeric_limits<LONG>::max();
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, std::numeric_limits<LONG>::max() - 2);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArrayLimits, CopyADescriptorWithoutDataToOneWithZeros) {
    SAFEARRAY* const array = Descriptor(8, {2, 3});
    SAFEARRAY* copy = nullptr;
    ASSERT_EQ(SafeArrayCopy(array, &copy), S_OK);
    ASSERT_NE(copy->pvData, nullptr);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(static_cast<const double*>(copy->pvData)[i], 0.0);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

} // namespace

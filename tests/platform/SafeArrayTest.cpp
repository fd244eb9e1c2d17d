#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>

namespace {

struct Destroy {
    void operator()(SAFEARRAY* array) const { EXPECT_EQ(SafeArrayDestroy(array), S_OK); }
};
using Owned = std::unique_ptr<SAFEARRAY, Destroy>;

template <std::size_t N> Owned Doubles(std::array<SAFEARRAYBOUND, N> bounds) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(SafeArrayAllocDescriptor(static_cast<UINT>(N), &array), S_OK);
    array->cbElements = sizeof(double);
    SAFEARRAYBOUND* const lastFirst = array->rgsabound;
    std::reverse_copy(bounds.begin(), bounds.end(), lastFirst);
    EXPECT_EQ(SafeArrayAllocData(array), S_OK);
    return Owned(array);
}

/// An array of records of five numbers, created step by step as by a client.
Owned Records(ULONG count, LONG lowerBound = 0) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(SafeArrayAllocDescriptor(1, &array), S_OK);
    array->cbElements = 40;
    array->rgsabound[0] = {count, lowerBound};
    EXPECT_EQ(SafeArrayAllocData(array), S_OK);
    return Owned(array);
}

/// Writes 1, 2, 3 and so on into the bytes of the elements.
void FillWithNumbers(SAFEARRAY& array, std::size_t bytes) {
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(&array, &data), S_OK);
    const auto first = static_cast<unsigned char*>(data);
    std::iota(first, first + bytes, static_cast<unsigned char>(1));
    ASSERT_EQ(SafeArrayUnaccessData(&array), S_OK);
}

TEST(SafeArray, ReturnsItsBounds) {
    const struct {
        ULONG count;
        LONG lower;
        LONG upper;
        const char* why;
    } cases[] = {
        {4, 0, 3, "counted from 0"},
        {3, -1, 1, "counted from -1"},
        {1, 7, 7, "a single element"},
        {0, 0, -1, "no element: the upper bound lies below the lower"},
        {0, 5, 4, "no element, counted from 5"},
    };
    for (const auto& [count, lower, upper, why] : cases) {
        const Owned array = Doubles<1>({{{count, lower}}});
        ASSERT_NE(array, nullptr) << why;
        LONG bound = 12345;
        EXPECT_EQ(SafeArrayGetLBound(array.get(), 1, &bound), S_OK) << why;
        EXPECT_EQ(bound, lower) << why;
        EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &bound), S_OK) << why;
        EXPECT_EQ(bound, upper) << why;
    }
}

TEST(SafeArray, CountsItsDimensionsFromTheFirst) {
    const Owned array = Doubles<2>({{{3, -1}, {5, 7}}});
    EXPECT_EQ(SafeArrayGetDim(array.get()), 2U);
    EXPECT_EQ(SafeArrayGetElemsize(array.get()), sizeof(double));
    LONG bound = 0;
    SafeArrayGetLBound(array.get(), 1, &bound);
    EXPECT_EQ(bound, -1);
    SafeArrayGetUBound(array.get(), 2, &bound);
    EXPECT_EQ(bound, 11);
    EXPECT_EQ(array->rgsabound[0].cElements, 5U) << "the descriptor has the last dimension first";
}

TEST(SafeArray, RefusesTheBoundsOfAMissingDimension) {
    const Owned array = Doubles<1>({{{4, 0}}});
    LONG bound = 77;
    for (const UINT dimension : {0U, 2U, 65536U}) {
        EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
        EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
    }
    EXPECT_EQ(SafeArrayGetUBound(nullptr, 1, &bound), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetLBound(nullptr, 1, &bound), E_INVALIDARG);
    EXPECT_EQ(bound, 77);
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0U);
    EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0U);
}

TEST(SafeArray, IsFilledWithZerosAtFirst) {
    const Owned array = Records(3);
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    const auto bytes = static_cast<const unsigned char*>(data);
    EXPECT_TRUE(std::all_of(bytes, bytes + 3 * 40, [](unsigned char byte) { return byte == 0; }));
    SafeArrayUnaccessData(array.get());
}

TEST(SafeArray, CopiesBoundsAndElements) {
    const Owned original = Records(3, -2);
    FillWithNumbers(*original, 120);
    SAFEARRAY* made = nullptr;
    ASSERT_EQ(SafeArrayCopy(original.get(), &made), S_OK);
    const Owned copy(made);
    EXPECT_NE(copy->pvData, original->pvData);
    EXPECT_EQ(SafeArrayGetElemsize(copy.get()), 40U);
    EXPECT_EQ(copy->rgsabound[0].cElements, 3U);
    EXPECT_EQ(copy->rgsabound[0].lLbound, -2);
    EXPECT_EQ(std::memcmp(copy->pvData, original->pvData, 120), 0);
}

TEST(SafeArray, CopiesEveryDimension) {
    const Owned original = Doubles<3>({{{2, 0}, {3, 1}, {4, -1}}});
    FillWithNumbers(*original, 2 * 3 * 4 * sizeof(double));
    SAFEARRAY* made = nullptr;
    ASSERT_EQ(SafeArrayCopy(original.get(), &made), S_OK);
    const Owned copy(made);
    ASSERT_EQ(SafeArrayGetDim(copy.get()), 3U);
    for (const UINT dimension : {1U, 2U, 3U}) {
        LONG of = 0, ofCopy = 0;
        SafeArrayGetUBound(original.get(), dimension, &of);
        SafeArrayGetUBound(copy.get(), dimension, &ofCopy);
        EXPECT_EQ(of, ofCopy);
    }
    EXPECT_EQ(std::memcmp(copy->pvData, original->pvData, 2 * 3 * 4 * sizeof(double)), 0);
}

TEST(SafeArray, IsCopiedWithoutItsAccesses) {
    const Owned original = Records(1);
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(original.get(), &data), S_OK);
    SAFEARRAY* copy = nullptr;
    ASSERT_EQ(SafeArrayCopy(original.get(), &copy), S_OK);
    EXPECT_EQ(copy->cLocks, 0U);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    SafeArrayUnaccessData(original.get());
}

TEST(SafeArray, CopiesNothingForNull) {
    const Owned array = Records(1);
    SAFEARRAY* copy = array.get();
    EXPECT_EQ(SafeArrayCopy(nullptr, &copy), S_OK);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(SafeArrayCopy(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayCopy(nullptr, nullptr), E_INVALIDARG);
}

TEST(SafeArray, DoesNotCopyElementsWithoutASize) {
    SAFEARRAY* descriptor = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, &descriptor), S_OK);
    const Owned array(descriptor);
    SAFEARRAY* copy = array.get();
    EXPECT_EQ(SafeArrayCopy(array.get(), &copy), E_INVALIDARG);
    EXPECT_EQ(copy, nullptr);
}

TEST(SafeArray, WithoutElementsIsAccessedAndCopied) {
    const Owned array = Records(0);
    void* data = nullptr;
    EXPECT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    EXPECT_EQ(SafeArrayUnaccessData(array.get()), S_OK);
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array.get(), &copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
}

TEST(SafeArray, IsNotDestroyedWhileItIsAccessed) {
    SAFEARRAY* const array = Records(2).release();
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
    ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED) << "no access is left";
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
}

TEST(SafeArray, RefusesAccessesBeyondTheMaximum) {
    const Owned array = Records(1);
    void* data = nullptr;
    for (int i = 0; i < 0xFFFF; ++i) ASSERT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    EXPECT_EQ(SafeArrayAccessData(array.get(), &data), E_UNEXPECTED);
    for (int i = 0; i < 0xFFFF; ++i) ASSERT_EQ(SafeArrayUnaccessData(array.get()), S_OK);
    EXPECT_EQ(array->cLocks, 0U);
}

TEST(SafeArray, RefusesNullPointers) {
    void* data = nullptr;
    EXPECT_EQ(SafeArrayAccessData(nullptr, &data), E_INVALIDARG);
    EXPECT_EQ(SafeArrayUnaccessData(nullptr), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocData(nullptr), E_INVALIDARG);
    const Owned array = Records(1);
    EXPECT_EQ(SafeArrayAccessData(array.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(array->cLocks, 0U);
}

TEST(SafeArray, RefusesADescriptorWithoutOrWithTooManyDimensions) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(SafeArrayAllocDescriptor(0, &array), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocDescriptor(65536, &array), E_INVALIDARG);
    EXPECT_EQ(SafeArrayAllocDescriptor(1, nullptr), E_POINTER);
}

} // namespace

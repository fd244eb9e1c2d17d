#include "calculator/CQMVCalculator.h"
#include "maths/CMaCircle.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

/// The index of each virtual operation in its class's table. A compiled client calls by index, not by name.

namespace {

/// The index of a virtual operation. In the C++ ABI of both platforms' compilers (Itanium) a pointer to one begins with
/// its offset in the table plus 1.
template <typename Operation> std::size_t PlaceOf(Operation operation) {
    static_assert(std::is_member_function_pointer_v<Operation>);
    std::size_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    EXPECT_EQ(offset % sizeof(void*), 1U) << "not a virtual operation";
    return offset / sizeof(void*);
}

TEST(VirtualOperations, OfTheInterfacesAreInTheRequiredOrder) {
    // After the methods of IUnknown or, where there is late binding, of IDispatch.
    constexpr std::size_t first = std::is_same_v<DualInterfaceBase, IUnknown> ? 3 : 7;
    EXPECT_EQ(PlaceOf(&IQMVCalculator::LoadHeadGeometryFromFile), first);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::SaveHeadGeometryToFile), first + 1);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::GetCurrentHeadPosition), first + 2);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::SetCurrentHeadPosition), first + 3);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::CalculateMove), first + 4);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::EnterHeadGeometry), first + 5);
    EXPECT_EQ(PlaceOf(&IQMVCalculator::GetStartPosition), first + 6);
    EXPECT_EQ(PlaceOf(&IQMVCalculator2::GetPoleSpherePosition), first + 7);
}

TEST(VirtualOperations, OfNonLinearGeometryAreInTheRequiredOrder) {
    using Class = CMaNonLinearGeometry;
    using Axis = CMaGeometry::EAxisType;
    constexpr std::size_t first = 2; // after the two destructors: the complete one and the deleting one
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(double, Axis)>(&Class::Rotate)), first);
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(double, const CMaVector&)>(&Class::Rotate)), first + 1);
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(double, Axis, const CMaPoint&)>(&Class::Rotate)), first + 2);
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(double, const CMaVector&, const CMaPoint&)>(&Class::Rotate)),
              first + 3);
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(double, double, double)>(&Class::Translate)), first + 4);
    EXPECT_EQ(PlaceOf(static_cast<void (Class::*)(const CMaPoint&)>(&Class::Translate)), first + 5);
}

} // namespace

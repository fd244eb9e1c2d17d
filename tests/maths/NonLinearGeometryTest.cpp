#include "tests/maths/GeometryChecks.h"

#include <cstdint>

// Both compilers of this project follow the Itanium C++ ABI. There a pointer to a virtual member function starts with 1
// plus the offset of the function in the virtual table, in bytes.

namespace {

using Shape = CMaNonLinearGeometry;

template <typename Member> std::size_t SlotOf(Member member) {
    std::uintptr_t start = 0;
    static_assert(sizeof member >= sizeof start);
    std::memcpy(&start, &member, sizeof start);
    return (start - 1) / sizeof(void*);
}

} // namespace

TEST(NonLinearGeometry, HasItsVirtualOperationsInTheRequiredOrder) {
    constexpr std::size_t destructors = 2; // the complete and the deleting one; they are inherited and come first
    using Axis = CMaGeometry::EAxisType;
    using Number = double;
    EXPECT_EQ(SlotOf<void (Shape::*)(Number, Axis)>(&Shape::Rotate), destructors + 0);
    EXPECT_EQ(SlotOf<void (Shape::*)(Number, const CMaVector&)>(&Shape::Rotate), destructors + 1);
    EXPECT_EQ((SlotOf<void (Shape::*)(Number, Axis, const CMaPoint&)>(&Shape::Rotate)), destructors + 2);
    EXPECT_EQ((SlotOf<void (Shape::*)(Number, const CMaVector&, const CMaPoint&)>(&Shape::Rotate)), destructors + 3);
    EXPECT_EQ((SlotOf<void (Shape::*)(Number, Number, Number)>(&Shape::Translate)), destructors + 4);
    EXPECT_EQ((SlotOf<void (Shape::*)(const CMaPoint&)>(&Shape::Translate)), destructors + 5);
}

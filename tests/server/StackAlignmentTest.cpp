#include "tests/server/Client.h"
#include "tests/support/AlignmentArray.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

/// 32-bit callers align the stack to 4 bytes; the component's vector arithmetic needs 16. This file is in the 32-bit
/// tests only.

namespace {

class StackAlignment : public Client {};

/// An argument or `this` as 32-bit code passes it: in words of 4 bytes.
using Words = std::vector<std::uint32_t>;

template <typename Argument> void Append(Words& words, const Argument& argument) {
    const auto added = std::bit_cast<std::array<std::uint32_t, sizeof argument / sizeof(std::uint32_t)>>(argument);
    words.insert(words.end(), added.begin(), added.end());
}

/// Calls the method with the index `place` in the object's table. At the call instruction the stack pointer is a
/// multiple of 16 plus `offset`.
template <typename... Arguments>
HRESULT CallWithStackAt(std::uint32_t offset, IUnknown* object, std::size_t place, Arguments... arguments) {
    Words words;
    Append(words, object);
    (Append(words, arguments), ...);
    const void* const method = (*reinterpret_cast<const void* const* const*>(object))[place];
    auto count = static_cast<std::uint32_t>(words.size());
    std::uint32_t gap = (offset + 4 * count) % 16; // the pushed words move the pointer down by 4 each
    HRESULT result = E_UNEXPECTED;
    __asm__ volatile("movl %%esp, %%esi\n\t"
                     "andl $-16, %%esp\n\t"
                     "addl $-16, %%esp\n\t"
                     "addl %%edx, %%esp\n"
                     "1:\n\t"
                     "pushl -4(%%ebx,%%ecx,4)\n\t"
                     "decl %%ecx\n\t"
                     "jnz 1b\n\t"
                     "call *%%edi\n\t"
                     "movl %%esi, %%esp"
                     : "=a"(result), "+c"(count), "+d"(gap)
                     : "b"(words.data()), "D"(method)
                     : "esi", "memory", "cc");
    return result;
}

// After the seven methods of IDispatch, in the order of the interface.
constexpr std::size_t setCurrentHeadPosition = 10;
constexpr std::size_t calculateMove = 11;
constexpr std::size_t enterHeadGeometry = 12;

TEST_F(StackAlignment, OfTheCallerHasNoEffect) {
    const auto expectedFrom = At(15.0, 30.0);
    RequiredMoves expected{};
    ASSERT_EQ(expectedFrom->CalculateMove(60.0, -90.0, &expected), S_OK);
    for (const std::uint32_t offset : {0U, 4U, 8U, 12U}) {
        const auto calculator = server.Create();
        AlignmentArray aAxisPoints(Head().ASet(45.0));
        AlignmentArray bAxisPoints(Head().BSet(60.0));
        RequiredMoves moves{};
        EXPECT_EQ(
            CallWithStackAt(offset, calculator.Get(), enterHeadGeometry, aAxisPoints.Address(), bAxisPoints.Address()),
            S_OK);
        EXPECT_EQ(CallWithStackAt(offset, calculator.Get(), setCurrentHeadPosition, 15.0, 30.0), S_OK);
        EXPECT_EQ(CallWithStackAt(offset, calculator.Get(), calculateMove, 60.0, -90.0, &moves), S_OK);
        EXPECT_EQ(std::memcmp(&moves, &expected, sizeof moves), 0) << offset;
    }
}

} // namespace

#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace {

TEST(Bstr, IsACopyWithItsLengthInCharactersAndBytes) {
    std::wstring original = L"QMV40";
    const BSTR text = SysAllocString(original.c_str());
    original[0] = L'x';
    EXPECT_STREQ(text, L"QMV40");
    EXPECT_EQ(SysStringLen(text), 5U);
    SysFreeString(text);
}

TEST(Bstr, HasItsLengthInBytesBeforeItsFirstCharacter) {
    const BSTR text = SysAllocString(L"seven..");
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof bytes, sizeof bytes);
    EXPECT_EQ(bytes, 7U * sizeof(OLECHAR));
    SysFreeString(text);
}

TEST(Bstr, KeepsZeroCharactersInside) {
    const OLECHAR original[] = {L'a', L'\0', L'b'};
    const BSTR text = SysAllocStringLen(original, 3);
    EXPECT_EQ(std::wstring(text, SysStringLen(text)), std::wstring(original, 3));
    EXPECT_EQ(text[3], L'\0');
    SysFreeString(text);
}

TEST(Bstr, IsTerminatedWhenOnlyALengthIsGiven) {
    const BSTR text = SysAllocStringLen(nullptr, 4);
    EXPECT_EQ(SysStringLen(text), 4U);
    EXPECT_EQ(text[4], L'\0');
    SysFreeString(text);
}

TEST(Bstr, CanBeEmptyWithoutBeingNull) {
    const BSTR text = SysAllocString(L"");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringLen(text), 0U);
    EXPECT_EQ(*text, L'\0');
    SysFreeString(text);
}

TEST(Bstr, IsNullForNullAndNullIsEmpty) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    SysFreeString(nullptr);
}

TEST(Bstr, IsRefusedWhenItsLengthOverflows) {
    for (const UINT length : {std::numeric_limits<UINT>::max(), std::numeric_limits<UINT>::max() - 1,
                              static_cast<UINT>(std::numeric_limits<UINT>::max() / sizeof(OLECHAR))})
        EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << length;
}

} // namespace

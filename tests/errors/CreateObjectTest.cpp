#include "errors/QMVObjectHelper.h"
#include "interface/ErrorCodes.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

namespace {

constexpr CLSID nobodysClass{0x1B0F4C6E, 0x83A7, 0x4E21, {0x9A, 0x55, 0x6D, 0x10, 0xC4, 0x3F, 0xE2, 0x07}};

TEST(CreateObject, RaisesOneCodeForAllFailuresAndClearsThePointer) {
    int anything = 0;
    void* object = &anything;
    const Raised raised = RaisedBy([&] { QMVObjectHelper::CREATE_OBJECT(nobodysClass, IID_IUnknown, &object); });
    EXPECT_EQ(raised.code, QMV_E_OBJECT_NOT_CREATED);
    EXPECT_EQ(object, nullptr);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, L"QMVObjectHelper::CREATE_OBJECT");
    EXPECT_EQ(raised.record->description, L"Failed to create object");
    EXPECT_EQ(raised.record->helpFile, L"");
}

TEST(CreateObject, RaisesTheSameCodeForANullPointer) {
    const Raised raised = RaisedBy([] { QMVObjectHelper::CREATE_OBJECT(nobodysClass, IID_IUnknown, nullptr); });
    EXPECT_EQ(raised.code, QMV_E_OBJECT_NOT_CREATED);
}

} // namespace

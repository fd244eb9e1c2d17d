#include "errors/QMVObjectHelper.h"
#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

constexpr CLSID announcedClass{0x3D7C5A10, 0x44F2, 0x4B8D, {0xA1, 0x6E, 0x90, 0x2B, 0x5C, 0x18, 0xD3, 0xF4}};

HRESULT GetAnnouncedClass(REFCLSID, REFIID iid, void** object) {
    return DllGetClassObject(CLSID_QMVCalculator, iid, object);
}

/// Announces the calculator's class in this process under an identifier of this test.
void Announce() {
    static ClassAnnouncement announcement{announcedClass, L"Test.Calculator.1", L"Test.Calculator", GetAnnouncedClass};
    static bool announced = false;
    if (!announced) AnnounceClass(announcement);
    announced = true;
}

TEST(CreateObject, GivesTheObjectOfAnAnnouncedClass) {
    Announce();
    ComPointer<IQMVCalculator> calculator;
    EXPECT_EQ(QMVObjectHelper::CREATE_OBJECT(announcedClass, IID_IQMVCalculator, calculator.Receive()), S_OK);
    ASSERT_TRUE(calculator);
    EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
}

TEST(CreateObject, RaisesItsOwnCodeWhenTheObjectLacksTheInterface) {
    Announce();
    int anything = 0;
    void* object = &anything;
    EXPECT_THROW(QMVObjectHelper::CREATE_OBJECT(announcedClass, IID_IClassFactory, &object), HRESULT);
    EXPECT_EQ(object, nullptr);
}

} // namespace

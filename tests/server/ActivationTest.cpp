#include "tests/server/Client.h"

#include "tests/support/Failures.h"

#include <cstring>

using namespace qmv40;

/// Most clients create objects through the registration. These tests do the same, and also check failures.

namespace {

class Activation : public RegisteredClient {};
class Failures : public RegisteredClient {};

CLSID ClassOf(const wchar_t* progId) {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
    return clsid;
}

TEST_F(Activation, CreatesByTheIdentifierAndByBothNames) {
    for (const CLSID& clsid :
         {CLSID_QMVCalculator, ClassOf(QMVCalculatorProgId), ClassOf(QMVCalculatorVersionIndependentProgId)}) {
        EXPECT_TRUE(IsEqualCLSID(clsid, CLSID_QMVCalculator));
        EXPECT_TRUE(CreateRegistered(clsid));
    }
}

TEST_F(Activation, NamesTheClassByItsVersionedName) {
    LPOLESTR progId = nullptr;
    ASSERT_EQ(ProgIDFromCLSID(CLSID_QMVCalculator, &progId), S_OK);
    EXPECT_STREQ(progId, QMVCalculatorProgId);
    CoTaskMemFree(progId);
}

TEST_F(Activation, CreatesInTheCallersOwnApartmentFromTheLoadedModule) {
    {
        const auto calculator = CreateRegistered();
        ASSERT_TRUE(calculator);
        EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
        EXPECT_EQ(References(*calculator.Get()), 1U) << "a proxy would hold another reference";
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(Activation, RefusesAggregationExceptAsIUnknown) {
    const auto outer = CreateRegistered();
    void* object = this;
    EXPECT_EQ(CoCreateInstance(CLSID_QMVCalculator, outer.Get(), CLSCTX_INPROC_SERVER, IID_IQMVCalculator, &object),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST_F(Activation, ReturnsTheClassObject) {
    ComPointer<IClassFactory> factory;
    ASSERT_EQ(
        CoGetClassObject(CLSID_QMVCalculator, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.Receive()),
        S_OK);
    EXPECT_EQ(factory.Get(), server.Factory().Get());
}

TEST_F(Activation, GivesTheSamePlansAsTheLoadedModule) {
    const auto registered = CreateRegistered();
    const auto byHand = At(15.0, 30.0);
    ASSERT_EQ(Enter(*registered.Get()), S_OK);
    ASSERT_EQ(registered->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    RequiredMoves moves{};
    RequiredMoves expected{};
    EXPECT_EQ(registered->CalculateMove(90.0, -45.0, &moves), S_OK);
    EXPECT_EQ(byHand->CalculateMove(90.0, -45.0, &expected), S_OK);
    EXPECT_EQ(std::memcmp(&moves, &expected, sizeof moves), 0);
}

TEST(ActivationWithoutRegistration, FindsNeitherClassNorName) {
    const Apartment apartment;
    ComPointer<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.Receive()),
              REGDB_E_CLASSNOTREG);
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(QMVCalculatorProgId, &clsid), CO_E_CLASSSTRING);
}

TEST_F(Failures, SetAnErrorRecordWithHelpFileAndInterface) {
    const auto fresh = CreateRegistered();
    AlignmentArray none = AlignmentArray::Null();
    AlignmentArray enough(Head().BSet(60.0));
    double a = 0.0;
    ExpectFailures(
        {{"an error of the component",
          [&] { return ReturnedBy([&] { return fresh->GetCurrentHeadPosition(&a, &a); }); }, failures::noPosition},
         {"no array, the platform's own failure passed on",
          [&] { return ReturnedBy([&] { return fresh->EnterHeadGeometry(none.Address(), enough.Address()); }); },
          failures::noArray}});
    if (catchesWhatIsThrown) {
        ExpectFailures({{"a plan without a geometry, thrown", [&] { return Plan(*fresh.Get(), 0.0, 0.0); },
                         failures::noGeometry}});
    }
}

TEST_F(Failures, DoNotChangeTheOutParameters) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto calculator = CreateRegistered();
    Position position{12.5, -12.5};
    XYZData start{1.0, 2.0, 3.0};
    RequiredMoves moves{};
    moves.DisengageFromLockLever = {4.0, 5.0, 6.0};
    EXPECT_EQ(calculator->GetCurrentHeadPosition(&position.a, &position.b), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(calculator->GetStartPosition(&start), QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
    EXPECT_EQ(position, (Position{12.5, -12.5}));
    EXPECT_EQ(start, (XYZData{1.0, 2.0, 3.0}));
    EXPECT_EQ(moves.DisengageFromLockLever, (XYZData{4.0, 5.0, 6.0}));
}

TEST_F(Failures, DoNotChangeTheObjectAndItsReferences) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto calculator = CreateRegistered();
    ASSERT_EQ(Enter(*calculator.Get()), S_OK);
    ASSERT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    RequiredMoves moves{};
    for (int i = 0; i < 3; ++i) {
        EXPECT_THROW(calculator->CalculateMove(7.0, 0.0, &moves), HRESULT);
        EXPECT_EQ(References(*calculator.Get()), 1U);
    }
    EXPECT_EQ(calculator->CalculateMove(45.0, 90.0, &moves), S_OK);
}

TEST_F(Failures, DoNotKeepTheModuleLoaded) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    RequiredMoves moves{};
    EXPECT_THROW(CreateRegistered()->CalculateMove(0.0, 0.0, &moves), HRESULT);
    EXPECT_EQ(server.CanUnloadNow(), S_OK) << "a call that has thrown must not be counted";
}

} // namespace

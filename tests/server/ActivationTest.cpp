#include "tests/server/Client.h"

#include "interface/ErrorCodes.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/Bstr.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/ExpectedFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <cstring>

using namespace qmv40;

/// Most clients create objects through the registration. These tests do too, and check the failures there.

namespace {

class Activation : public RegisteredClient {};
class Failures : public RegisteredClient {
protected:
    TemporaryFolder folder;
};

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
    AlignmentArray few(Head().ASet(45.0, 3));
    AlignmentArray enough(Head().BSet(60.0));
    AlignmentArray none = AlignmentArray::Null();
    Bstr nowhere(folder.Path("no such folder") / "head.ini");
    double a = 0.0;
    double b = 0.0;
    XYZData start{};
    const ExpectedFailure failures[] = {
        {"getting a position that was never set",
         [&] { return ReturnedBy([&] { return fresh->GetCurrentHeadPosition(&a, &b); }); }, QMV_E_POSITION_UNKNOWN,
         L"CQMVCalculator::GetCurrentHeadPosition", L"Current Position is not known", L""},
        {"a start without a geometry", [&] { return ReturnedBy([&] { return fresh->GetStartPosition(&start); }); },
         QMV_E_NO_HEAD_GEOMETRY, L"CQMVCalculator::CalculateMove", L"Head Geometry has not been supplied and/or loaded",
         L""},
        {"a position between two steps",
         [&] { return ReturnedBy([&] { return fresh->SetCurrentHeadPosition(0.0, 7.0); }); }, QMV_E_INVALID_TARGET,
         L"CQMVCalculator::ValidateMoveTarget", L"Invalid B Target Angle, value must be a 15 degree interval.", L""},
        {"too few points",
         [&] { return ReturnedBy([&] { return fresh->EnterHeadGeometry(few.Address(), enough.Address()); }); },
         QMV_E_TOO_FEW_POINTS, L"RoundThePole::ValidateSafeArrayData", L"Too Few A Axis Points Supplied", L""},
        {"no array, the platform's own failure passed on",
         [&] { return ReturnedBy([&] { return fresh->EnterHeadGeometry(none.Address(), enough.Address()); }); },
         E_INVALIDARG, L"RoundThePole::ValidateSafeArrayData", L"Unspecified", L"Unspecified"},
        {"no file", [&] { return ReturnedBy([&] { return fresh->LoadHeadGeometryFromFile(nowhere.Address()); }); },
         QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile", L"Failed To Read from File", L""},
        {"saving into a folder that does not exist",
         [&] { return ReturnedBy([&] { return fresh->SaveHeadGeometryToFile(nowhere.Address()); }); },
         QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile", L"Failed To Write To File", L""}};
    for (const ExpectedFailure& failure : failures) ExpectRecord(failure);
}

TEST_F(Failures, ThatAreThrownSetAnErrorRecordToo) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto fresh = CreateRegistered();
    const auto placed = CreateRegistered();
    ASSERT_EQ(Enter(*placed.Get()), S_OK);
    ASSERT_EQ(placed->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    RequiredMoves moves{};
    const ExpectedFailure failures[] = {
        {"a plan without a geometry, thrown", [&] { return RaisedBy([&] { fresh->CalculateMove(0.0, 0.0, &moves); }); },
         QMV_E_NO_HEAD_GEOMETRY, L"CQMVCalculator::CalculateMove", L"Head Geometry has not been supplied and/or loaded",
         L""},
        {"a target out of range, thrown", [&] { return RaisedBy([&] { placed->CalculateMove(105.0, 0.0, &moves); }); },
         QMV_E_INVALID_TARGET, L"CQMVCalculator::ValidateMoveTarget",
         L"Invalid A Target Angle, value must be between 0 and 90.", L""}};
    for (const ExpectedFailure& failure : failures) ExpectRecord(failure);
}

TEST_F(Failures, AreReportedAsRecordedForTheFirstInterfaceOnly) {
    const auto calculator = CreateRegistered();
    ComPointer<ISupportErrorInfo> support;
    ASSERT_EQ(calculator->QueryInterface(IID_ISupportErrorInfo, support.Receive()), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IQMVCalculator), S_OK);
    for (const IID* const other : {&IID_IQMVCalculator2, &IID_IDispatch, &IID_IUnknown, &unknownIdentifier})
        EXPECT_EQ(support->InterfaceSupportsErrorInfo(*other), S_FALSE);
}

TEST_F(Failures, DoNotChangeTheOutParameters) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto calculator = CreateRegistered();
    double a = 12.5;
    double b = -12.5;
    XYZData start{1.0, 2.0, 3.0};
    RequiredMoves moves{};
    moves.DisengageFromLockLever = {4.0, 5.0, 6.0};
    EXPECT_EQ(calculator->GetCurrentHeadPosition(&a, &b), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(calculator->GetStartPosition(&start), QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_THROW(calculator->CalculateMove(0.0, 0.0, &moves), HRESULT);
    EXPECT_EQ(a, 12.5);
    EXPECT_EQ(b, -12.5);
    EXPECT_EQ(start.XPosition, 1.0);
    EXPECT_EQ(start.YPosition, 2.0);
    EXPECT_EQ(start.ZPosition, 3.0);
    EXPECT_EQ(moves.DisengageFromLockLever.ZPosition, 6.0);
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

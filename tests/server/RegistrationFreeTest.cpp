#include "tests/server/Client.h"

#include "tests/server/LateCall.h"
#include "tests/server/Registry.h"

#include <thread>

using namespace qmv40;

/// Registration-free use: the manifest of this program names the component's file, and nothing is registered.

namespace {

class RegistrationFree : public Client {
protected:
    void SetUp() override { ASSERT_EQ(RegisteredTexts(), RegistryTexts{}); }
    // On some platforms marshalling registers the type library. Nothing registers the class.
    void TearDown() override { EXPECT_FALSE(KeyExists(classKey)); }

    static ComPointer<IQMVCalculator2> Create(REFCLSID clsid) {
        ComPointer<IQMVCalculator2> calculator;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, calculator.Receive()),
                  S_OK);
        return calculator;
    }
};

TEST_F(RegistrationFree, CreatesByTheIdentifierFromTheFileBesideTheProgram) {
    const auto calculator = Create(CLSID_QMVCalculator);
    ASSERT_TRUE(calculator);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE) << "the object must come from that file";
    EXPECT_EQ(Enter(*calculator.Get()), S_OK);
    EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    RequiredMoves moves{};
    RequiredMoves expected{};
    EXPECT_EQ(calculator->CalculateMove(90.0, -45.0, &moves), S_OK);
    EXPECT_EQ(At(15.0, 30.0)->CalculateMove(90.0, -45.0, &expected), S_OK);
    EXPECT_EQ(std::memcmp(&moves, &expected, sizeof moves), 0);
}

TEST_F(RegistrationFree, CreatesByBothNames) {
    for (const wchar_t* const progId : {QMVCalculatorProgId, QMVCalculatorVersionIndependentProgId}) {
        CLSID clsid{}; // can be an alias of the class that is valid in this program only
        ASSERT_EQ(CLSIDFromProgID(progId, &clsid), S_OK) << std::filesystem::path(progId);
        EXPECT_TRUE(Create(clsid)) << std::filesystem::path(progId);
    }
}

TEST_F(RegistrationFree, BindsLate) {
    const auto calculator = Create(CLSID_QMVCalculator);
    ASSERT_TRUE(calculator);
    EXPECT_EQ(Call(*calculator.Get(), L"SetCurrentHeadPosition", 15.0, 30.0).code, S_OK);
    EXPECT_EQ(Call(*calculator.Get(), L"GetPoleSpherePosition").code, S_OK);
}

TEST_F(RegistrationFree, FindsTheTypeLibrary) {
    EXPECT_TRUE(
        Received<ITypeLib>([](ITypeLib** out) { return LoadRegTypeLib(LIBID_CoQMV40CalculatorLib, 1, 0, 1033, out); }));
}

// For such clients the platform creates an apartment, and may hold the class object there. So this test is here, where
// no test counts references.
TEST_F(RegistrationFree, GivesFreeThreadedClientsAProxy) {
    bool proxy = false;
    HRESULT set = E_FAIL;
    double a = 0.0;
    double b = 0.0;
    std::thread([&] {
        const Apartment freeThreaded(COINIT_MULTITHREADED);
        const auto calculator = Create(CLSID_QMVCalculator);
        if (!calculator) return;
        proxy = IsProxy(*calculator.Get());
        set = calculator->SetCurrentHeadPosition(75.0, -90.0);
        calculator->GetCurrentHeadPosition(&a, &b);
    }).join();
    EXPECT_TRUE(proxy);
    EXPECT_EQ(set, S_OK);
    EXPECT_EQ(a, 75.0);
    EXPECT_EQ(b, -90.0);
}

} // namespace

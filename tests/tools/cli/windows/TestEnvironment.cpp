#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

namespace {

/// Makes the component available to CoCreateInstance without registration. It is linked into this program.
class ComponentInThisProcess : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        ASSERT_EQ(S_OK, CoRegisterClassObject(CLSID_QMVCalculator, CalculatorFactory().Get(), CLSCTX_INPROC_SERVER,
                                              REGCLS_MULTIPLEUSE, &registration));
    }
    void TearDown() override {
        CoRevokeClassObject(registration);
        CoUninitialize();
    }

private:
    DWORD registration = 0;
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(std::make_unique<ComponentInThisProcess>().release());

} // namespace

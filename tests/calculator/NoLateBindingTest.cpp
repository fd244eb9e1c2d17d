#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

namespace {

// There is no late binding on platforms without type libraries.
TEST(Calculator, HasNoLateBindingOnThisPlatform) {
    const auto calculator = CreateCalculator();
    int anything = 0;
    void* object = &anything;
    EXPECT_EQ(calculator->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CalculatorFactory()->CreateInstance(nullptr, IID_IDispatch, &object), E_NOINTERFACE);
}

} // namespace

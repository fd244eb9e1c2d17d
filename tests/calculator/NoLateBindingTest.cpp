#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

namespace {

// Without the platform's type library there is no late binding, and nothing pretends that there is.
TEST(Calculator, OffersNoLateBindingWhereThePlatformHasNone) {
    const auto calculator = CreateCalculator();
    int anything = 0;
    void* object = &anything;
    EXPECT_EQ(calculator->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CalculatorFactory()->CreateInstance(nullptr, IID_IDispatch, &object), E_NOINTERFACE);
}

} // namespace

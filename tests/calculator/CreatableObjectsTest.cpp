#include "server/CreatableObjects.h"

#include "calculator/CQMVCalculator.h"
#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

#include <memory>

using namespace qmv40;

TEST(CreatableObjects, BeginWithoutAReference) {
    auto plain = std::make_unique<StandaloneObject<CQMVCalculator>>();
    EXPECT_EQ(plain->AddRef(), 1U);
    EXPECT_EQ(plain.release()->Release(), 0U);
    auto inner = std::make_unique<AggregatedObject<CQMVCalculator>>(nullptr);
    EXPECT_EQ(inner->AddRef(), 1U);
    EXPECT_EQ(inner.release()->Release(), 0U);
    EXPECT_EQ(DllCanUnloadNow(), S_OK) << "both objects must be deleted";
}

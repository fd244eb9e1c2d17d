#include "tests/calculator/MemoryFailures.h"

/// The name of the module's own file takes memory, and late binding needs the file for its type library.

namespace {

class LateBindingWithoutMemory : public PreparedCalculator {};

TEST_F(LateBindingWithoutMemory, ReturnsOutOfMemoryFromEveryCall) {
    const auto calculator = CreateCalculator();
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"CalculateMove")};
    DISPID id = 0;
    ITypeInfo* info = nullptr;
    DISPPARAMS none{};
    const struct {
        const char* call;
        std::function<HRESULT()> action;
    } calls[] = {{"GetTypeInfo", [&] { return calculator->GetTypeInfo(0, 0, &info); }},
                 {"GetIDsOfNames", [&] { return calculator->GetIDsOfNames(IID_NULL, names, 1, 0, &id); }},
                 {"Invoke", [&] { // 8: GetPoleSpherePosition
                      return calculator->Invoke(8, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
                  }}};
    for (const auto& [call, action] : calls) {
        SCOPED_TRACE(call);
        for (const auto extent : {FailingAllocations::Extent::One, FailingAllocations::Extent::AllAfter}) {
            HRESULT code = S_OK;
            FailingAllocations failing(0, extent);
            EXPECT_NO_THROW(code = action());
            EXPECT_TRUE(failing.Stop());
            EXPECT_EQ(code, E_OUTOFMEMORY);
        }
    }
}

} // namespace

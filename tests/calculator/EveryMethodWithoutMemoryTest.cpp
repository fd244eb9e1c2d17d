#include "interface/ErrorCodes.h"
#include "tests/calculator/MemoryFailures.h"
#include "tests/support/Bstr.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <optional>

using namespace qmv40;

/// Calls the methods of plain and aggregated objects, with success and with failures. (Both interfaces of an object are
/// one pointer.) Each allocation fails in turn. Each call must end with its own code or with E_OUTOFMEMORY, and leak
/// nothing; the object must work again when there is memory.

namespace {

/// Checks each time that no more blocks are allocated than the first time.
class SameBlocks {
public:
    void Expect() {
        const long now = FailingAllocations::LiveBlocks();
        if (!first) first = now;
        EXPECT_EQ(now, *first);
    }

private:
    std::optional<long> first;
};

/// A calculator, and the object that owns it.
struct Object {
    ComPointer<IUnknown> owner;
    ComPointer<IQMVCalculator2> calculator;
};

/// An outer object that aggregates a calculator.
class Outer final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown) return inner->QueryInterface(iid, object);
        AddRef();
        *object = static_cast<IUnknown*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) std::unique_ptr<Outer>(this).reset();
        return left;
    }

    ULONG references = 1;
    ComPointer<IUnknown> inner;
};

Object Plain() {
    Object object;
    object.calculator = CreateCalculator();
    return object;
}

Object Aggregated() {
    Object object;
    auto outer = std::make_unique<Outer>();
    CalculatorFactory()->CreateInstance(outer.get(), IID_IUnknown, outer->inner.Receive());
    object.owner = ComPointer<IUnknown>(outer.release());
    object.owner->QueryInterface(IID_IQMVCalculator2, object.calculator.Receive());
    return object;
}

/// The output of a call, if it has one.
using Numbers = std::array<double, numbersInAPlan>;

struct Method {
    const char* how;
    std::function<HRESULT(IQMVCalculator&, Numbers&)> call;
    HRESULT code;
};

class EveryMethod : public PreparedCalculator {
protected:
    /// The state of the object before each call: a geometry, and the head at A = 30, B = -75.
    void Prepare(const Object& object) {
        EXPECT_EQ(Enter(*object.calculator.Get(), Head()), S_OK);
        EXPECT_EQ(object.calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
    }

    /// The code that a call returns or throws.
    static HRESULT Code(const Method& method, IQMVCalculator& calculator, Numbers& numbers) {
        numbers = {};
        try {
            return method.call(calculator, numbers);
        } catch (const HRESULT thrown) {
            return thrown;
        }
    }

    void FailEveryAllocationOf(const Method& method, const Object& object) {
        Numbers numbers{};
        const auto call = [&] { return Code(method, *object.calculator.Get(), numbers); };
        Prepare(object);
        EXPECT_EQ(call(), method.code);
        const Numbers expected = numbers;
        Prepare(object);
        SameBlocks blocks;
        failures += ForEveryAllocation(call, [&](HRESULT code) {
            ASSERT_TRUE(code == method.code || code == E_OUTOFMEMORY) << std::hex << code;
            if (code == S_OK) {
                ASSERT_EQ(numbers, expected);
            }
            // With memory the same call has its usual result. Prepare then sets the old state again.
            Prepare(object);
            ASSERT_EQ(call(), method.code);
            ASSERT_EQ(numbers, expected);
            SetErrorInfo(0, nullptr);
            Prepare(object);
            blocks.Expect();
        });
    }

    std::vector<Method> Methods() {
        const auto entering = [](AlignmentArray& a, AlignmentArray& b) {
            return [&](IQMVCalculator& calculator, Numbers&) {
                return calculator.EnterHeadGeometry(a.Address(), b.Address());
            };
        };
        const auto planning = [](double a, double b) {
            return [=](IQMVCalculator& calculator, Numbers& numbers) {
                RequiredMoves moves{};
                const HRESULT code = calculator.CalculateMove(a, b, &moves);
                numbers = NumbersOf(moves);
                return code;
            };
        };
        return {
            {"loading", [&](auto& calculator, auto&) { return calculator.LoadHeadGeometryFromFile(saved.Address()); },
             S_OK},
            {"loading a file that does not exist",
             [&](auto& calculator, auto&) { return calculator.LoadHeadGeometryFromFile(nowhere.Address()); },
             QMV_E_READ_FROM_FILE},
            {"loading without a name",
             [&](auto& calculator, auto&) { return calculator.LoadHeadGeometryFromFile(nullptr); }, E_POINTER},
            {"saving", [&](auto& calculator, auto&) { return calculator.SaveHeadGeometryToFile(saved.Address()); },
             S_OK},
            {"saving into a folder that does not exist",
             [&](auto& calculator, auto&) { return calculator.SaveHeadGeometryToFile(nowhere.Address()); },
             QMV_E_WRITE_TO_FILE},
            {"getting the position",
             [](auto& calculator, auto& numbers) {
                 return calculator.GetCurrentHeadPosition(&numbers[0], &numbers[1]);
             },
             S_OK},
            {"getting the position with null pointers",
             [](auto& calculator, auto&) { return calculator.GetCurrentHeadPosition(nullptr, nullptr); }, E_POINTER},
            {"setting the position",
             [](auto& calculator, auto&) { return calculator.SetCurrentHeadPosition(45.0, 90.0); }, S_OK},
            {"setting a position that cannot be reached",
             [](auto& calculator, auto&) { return calculator.SetCurrentHeadPosition(7.0, 0.0); }, QMV_E_INVALID_TARGET},
            {"planning", planning(60.0, 120.0), S_OK},
            {"planning to a position that cannot be reached", planning(60.0, 200.0), QMV_E_INVALID_TARGET},
            {"planning into a null record",
             [](auto& calculator, auto&) { return calculator.CalculateMove(0.0, 0.0, nullptr); }, E_POINTER},
            {"entering", entering(aSet, bSet), S_OK},
            {"entering too few points", entering(fewPoints, bSet), QMV_E_TOO_FEW_POINTS},
            {"entering the two sets in the wrong order", entering(bSet, aSet), QMV_E_FIXED_AXIS_MOVED},
            {"entering points on a line", entering(line, bSet), QMV_E_GEOMETRY_IMPOSSIBLE},
            {"entering no array", entering(none, bSet), E_INVALIDARG},
            {"getting the start position",
             [](auto& calculator, auto& numbers) {
                 XYZData start{};
                 const HRESULT code = calculator.GetStartPosition(&start);
                 numbers[0] = start.XPosition;
                 numbers[1] = start.YPosition;
                 numbers[2] = start.ZPosition;
                 return code;
             },
             S_OK},
        };
    }

    static std::vector<HeadAlignmentDataItem> OnALine() {
        auto points = Head().ASet(45.0);
        double along = 0.0;
        for (auto& point : points) point = {point.APosition, point.BPosition, along += 1.0, 0.0, 0.0};
        return points;
    }

    TemporaryFolder folder;
    Bstr saved{folder.Path("head.ini")};
    Bstr nowhere{folder.Path("no such folder") / "head.ini"};
    AlignmentArray aSet{Head().ASet(45.0)};
    AlignmentArray bSet{Head().BSet(60.0)};
    AlignmentArray fewPoints{Head().ASet(45.0, 3)};
    AlignmentArray line{OnALine()};
    AlignmentArray none = AlignmentArray::Null();
    long failures = 0;
};

TEST_F(EveryMethod, EndsWithItsOwnCodeOrOutOfMemory) {
    ASSERT_EQ(WithGeometry()->SaveHeadGeometryToFile(saved.Address()), S_OK);
    for (const auto make : {&Plain, &Aggregated}) {
        const Object object = make();
        ASSERT_TRUE(object.calculator);
        for (const Method& method : Methods()) {
            SCOPED_TRACE(method.how);
            FailEveryAllocationOf(method, object);
        }
        const Method pole{"getting the pole sphere's position",
                          [&](IQMVCalculator&, Numbers& numbers) {
                              XYZData found{};
                              const HRESULT code = object.calculator->GetPoleSpherePosition(&found);
                              numbers[0] = found.XPosition;
                              return code;
                          },
                          S_OK};
        FailEveryAllocationOf(pole, object);
    }
    EXPECT_GT(failures, 500);
    std::cout << failures << " allocations failed" << std::endl;
}

TEST_F(EveryMethod, EndsWithItsOwnCodeOrOutOfMemoryInANewObject) {
    const auto fresh = CreateCalculator();
    double a = 0.0, b = 0.0;
    XYZData start{};
    RequiredMoves moves{};
    const std::function<HRESULT()> calls[] = {[&] { return fresh->GetCurrentHeadPosition(&a, &b); },
                                              [&] { return fresh->GetStartPosition(&start); },
                                              [&] { return fresh->CalculateMove(0.0, 0.0, &moves); }};
    constexpr HRESULT codes[] = {QMV_E_POSITION_UNKNOWN, QMV_E_NO_HEAD_GEOMETRY, QMV_E_NO_HEAD_GEOMETRY};
    for (std::size_t i = 0; i < std::size(calls); ++i) {
        SameBlocks blocks;
        ForEveryAllocation(calls[i], [&](HRESULT code) {
            EXPECT_TRUE(code == codes[i] || code == E_OUTOFMEMORY) << std::hex << code;
            SetErrorInfo(0, nullptr);
            blocks.Expect();
        });
    }
}

/// Creates an object for `iid`: plain, or aggregated by `outer`.
HRESULT Create(IClassFactory& factory, IUnknown* outer, REFIID iid) {
    ComPointer<IUnknown> object;
    return factory.CreateInstance(outer, iid, object.Receive());
}

TEST_F(EveryMethod, LeaksNothingInTheFactory) {
    const auto factory = CalculatorFactory();
    Outer outer;
    const struct {
        IUnknown* outer;
        const IID* iid;
        HRESULT code;
    } creations[] = {
        {nullptr, &IID_IUnknown, S_OK},
        {nullptr, &IID_IQMVCalculator, S_OK},
        {nullptr, &IID_IQMVCalculator2, S_OK},
        {nullptr, &IID_ISupportErrorInfo, S_OK},
        {nullptr, &IID_IClassFactory, E_NOINTERFACE},
        {&outer, &IID_IUnknown, S_OK},
        {&outer, &IID_IQMVCalculator, CLASS_E_NOAGGREGATION},
    };
    long failed = 0;
    for (const auto& creation : creations) {
        SameBlocks blocks;
        failed += ForEveryAllocation([&] { return Create(*factory.Get(), creation.outer, *creation.iid); },
                                     [&](HRESULT code) {
                                         EXPECT_TRUE(code == creation.code || code == E_OUTOFMEMORY)
                                             << std::hex << code;
                                         EXPECT_EQ(outer.references, 1U);
                                         blocks.Expect();
                                     });
    }
    EXPECT_GT(failed, 10);
}

} // namespace

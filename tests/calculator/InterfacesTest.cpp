#include "calculator/CQMVCalculator.h"
#include "server/CreatableObjects.h"
#include "tests/support/Calculator.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace qmv40;

/// Creation, identity and lifetime: the same for every client on every platform.

namespace {

constexpr GUID unknownIdentifier{0x9C0A7C1D, 0x5B1E, 0x4E7B, {0x8F, 0x0D, 0x2A, 0x61, 0x33, 0x94, 0xE5, 0x70}};

struct NamedInterface {
    const char* name;
    const IID* iid;
};

constexpr NamedInterface interfaces[] = {{"IUnknown", &IID_IUnknown},
                                         {"IQMVCalculator", &IID_IQMVCalculator},
                                         {"IQMVCalculator2", &IID_IQMVCalculator2},
                                         {"ISupportErrorInfo", &IID_ISupportErrorInfo}};

/// Queries `from` for `iid`. All interfaces begin with the methods of IUnknown.
ComPointer<IUnknown> Ask(IUnknown& from, REFIID iid) {
    ComPointer<IUnknown> answer;
    from.QueryInterface(iid, answer.Receive());
    return answer;
}

/// The number of references to `object`.
ULONG References(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

TEST(Calculator, ReturnsEachOfItsInterfacesFromEachOther) {
    const auto calculator = CreateCalculator();
    ASSERT_TRUE(calculator);
    for (const auto& [fromName, from] : interfaces) {
        const auto start = Ask(*calculator.Get(), *from);
        ASSERT_TRUE(start) << fromName;
        for (const auto& [toName, to] : interfaces) {
            const auto reached = Ask(*start.Get(), *to);
            ASSERT_TRUE(reached) << fromName << " to " << toName;
            EXPECT_TRUE(Ask(*reached.Get(), *from)) << "and back";
        }
    }
}

TEST(Calculator, HasOneIdentityForAllItsInterfaces) {
    const auto calculator = CreateCalculator();
    const auto other = CreateCalculator();
    const auto identity = Ask(*calculator.Get(), IID_IUnknown);
    for (const auto& [name, iid] : interfaces) {
        const auto face = Ask(*calculator.Get(), *iid);
        EXPECT_EQ(Ask(*face.Get(), IID_IUnknown).Get(), identity.Get()) << name;
    }
    EXPECT_NE(Ask(*other.Get(), IID_IUnknown).Get(), identity.Get());
}

TEST(Calculator, ReturnsTheSamePointerEveryTime) {
    const auto calculator = CreateCalculator();
    for (const auto& [name, iid] : interfaces)
        EXPECT_EQ(Ask(*calculator.Get(), *iid).Get(), Ask(*calculator.Get(), *iid).Get()) << name;
}

TEST(Calculator, HasOnePointerForBothItsInterfaces) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(Ask(*calculator.Get(), IID_IQMVCalculator).Get(), Ask(*calculator.Get(), IID_IQMVCalculator2).Get());
}

TEST(Calculator, RefusesOtherInterfacesAndClearsThePointer) {
    const auto calculator = CreateCalculator();
    for (const IID* const iid : {&unknownIdentifier, &IID_IClassFactory, &CLSID_QMVCalculator}) {
        int anything = 0;
        void* object = &anything;
        EXPECT_EQ(calculator->QueryInterface(*iid, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
    }
    EXPECT_EQ(References(*calculator.Get()), 1U);
}

TEST(Calculator, RefusesNullOutputPointers) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(calculator->QueryInterface(IID_IQMVCalculator, nullptr), E_POINTER);
    EXPECT_EQ(calculator->QueryInterface(unknownIdentifier, nullptr), E_POINTER);
}

TEST(Calculator, BeginsWithoutAReference) {
    auto plain = std::make_unique<StandaloneObject<CQMVCalculator>>();
    EXPECT_EQ(plain->AddRef(), 1U);
    EXPECT_EQ(plain.release()->Release(), 0U);
    auto inner = std::make_unique<AggregatedObject<CQMVCalculator>>(nullptr);
    EXPECT_EQ(inner->AddRef(), 1U);
    EXPECT_EQ(inner.release()->Release(), 0U);
    EXPECT_EQ(DllCanUnloadNow(), S_OK) << "both objects must be deleted";
}

TEST(Calculator, CountsOneReferenceForEachQuery) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(References(*calculator.Get()), 1U);
    for (const auto& [name, iid] : interfaces) {
        const auto another = Ask(*calculator.Get(), *iid);
        EXPECT_EQ(References(*calculator.Get()), 2U) << name;
        EXPECT_EQ(References(*another.Get()), 2U) << "one count for the whole object";
    }
    EXPECT_EQ(References(*calculator.Get()), 1U);
}

// The method of the second interface sets the error record too. The object does not report that: required.
TEST(Calculator, ReportsErrorRecordsForItsFirstInterfaceOnly) {
    const auto calculator = CreateCalculator();
    ComPointer<ISupportErrorInfo> support;
    ASSERT_EQ(calculator->QueryInterface(IID_ISupportErrorInfo, support.Receive()), S_OK);
    const struct {
        const char* name;
        const IID* iid;
        HRESULT answer;
    } cases[] = {{"IQMVCalculator", &IID_IQMVCalculator, S_OK},
                 {"IQMVCalculator2", &IID_IQMVCalculator2, S_FALSE},
                 {"IUnknown", &IID_IUnknown, S_FALSE},
                 {"IDispatch", &IID_IDispatch, S_FALSE},
                 {"ISupportErrorInfo", &IID_ISupportErrorInfo, S_FALSE},
                 {"the class", &CLSID_QMVCalculator, S_FALSE},
                 {"anything", &unknownIdentifier, S_FALSE}};
    for (const auto& [name, iid, answer] : cases) EXPECT_EQ(support->InterfaceSupportsErrorInfo(*iid), answer) << name;
}

TEST(ClassObject, IsOneForTheModule) {
    const auto factory = CalculatorFactory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(CalculatorFactory().Get(), factory.Get());
    ComPointer<IUnknown> unknown;
    EXPECT_EQ(DllGetClassObject(CLSID_QMVCalculator, IID_IUnknown, unknown.Receive()), S_OK);
    EXPECT_EQ(Ask(*factory.Get(), IID_IUnknown).Get(), unknown.Get());
}

TEST(ClassObject, IsRefusedForWrongClassesInterfacesAndPointers) {
    int anything = 0;
    void* object = &anything;
    EXPECT_EQ(DllGetClassObject(unknownIdentifier, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    object = &anything;
    EXPECT_EQ(DllGetClassObject(CLSID_QMVCalculator, IID_IQMVCalculator, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(DllGetClassObject(CLSID_QMVCalculator, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ClassObject, CreatesForEveryInterfaceAndRefusesOthers) {
    auto factory = CalculatorFactory();
    for (const auto& [name, iid] : interfaces) {
        ComPointer<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, *iid, object.Receive()), S_OK) << name;
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(References(*object.Get()), 1U) << name;
    }
    int anything = 0;
    void* object = &anything;
    EXPECT_EQ(factory->CreateInstance(nullptr, unknownIdentifier, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    factory = ComPointer<IClassFactory>();
    EXPECT_EQ(DllCanUnloadNow(), S_OK) << "a refused object must be deleted";
}

TEST(Module, CannotUnloadWhileAnObjectLives) {
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    {
        const auto one = CreateCalculator();
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
        {
            const auto other = CreateCalculator();
            const auto sameAgain = Ask(*other.Get(), IID_ISupportErrorInfo);
            EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
        }
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "one object is left";
    }
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(Module, CannotUnloadWhileItIsLocked) {
    EXPECT_EQ(CalculatorFactory()->LockServer(true), S_OK);
    EXPECT_EQ(CalculatorFactory()->LockServer(true), S_OK);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(CalculatorFactory()->LockServer(false), S_OK);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "locked twice";
    EXPECT_EQ(CalculatorFactory()->LockServer(false), S_OK);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

/// An outer object that aggregates a calculator and passes queries on to it.
class Outer final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown) return inner->QueryInterface(iid, object);
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT TakeIn(REFIID iid) { return CalculatorFactory()->CreateInstance(this, iid, inner.Receive()); }

    ULONG references = 1;
    ComPointer<IUnknown> inner;
};

TEST(AggregatedCalculator, IsCreatedAsIUnknownOnly) {
    for (const IID* const iid : {&IID_IQMVCalculator, &IID_IQMVCalculator2, &IID_ISupportErrorInfo}) {
        Outer outer;
        EXPECT_EQ(outer.TakeIn(*iid), CLASS_E_NOAGGREGATION);
        EXPECT_FALSE(outer.inner);
        EXPECT_EQ(outer.references, 1U);
    }
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(AggregatedCalculator, BelongsToTheOuterObject) {
    Outer outer;
    ASSERT_EQ(outer.TakeIn(IID_IUnknown), S_OK);
    EXPECT_EQ(outer.references, 1U) << "the inner object must hold no reference to the outer one";
    {
        ComPointer<IQMVCalculator2> calculator;
        ASSERT_EQ(outer.QueryInterface(IID_IQMVCalculator2, calculator.Receive()), S_OK);
        EXPECT_EQ(outer.references, 2U) << "a reference to an inner interface must count at the outer object";
        EXPECT_EQ(Ask(*calculator.Get(), IID_IUnknown).Get(), static_cast<IUnknown*>(&outer));
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    }
    EXPECT_EQ(outer.references, 1U);
    EXPECT_NE(Ask(*outer.inner.Get(), IID_IUnknown).Get(), static_cast<IUnknown*>(&outer))
        << "the inner IUnknown must stay separate from the outer one";
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    outer.inner = ComPointer<IUnknown>();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

} // namespace

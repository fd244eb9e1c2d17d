#include "tests/support/PreparedCalculator.h"

#include "interface/Identifiers.h"

#include <type_traits>
#include <vector>

using namespace qmv40;

/// Creation, identity and lifetime: the same for every client on every platform. On Windows these tests are in the
/// program that loads the delivered file.

namespace {

constexpr GUID unknownIdentifier{0x9C0A7C1D, 0x5B1E, 0x4E7B, {0x8F, 0x0D, 0x2A, 0x61, 0x33, 0x94, 0xE5, 0x71}};
/// An interface of the outer object in the tests of aggregation.
constexpr IID outersInterface{0x9C0A7C1D, 0x5B1E, 0x4E7B, {0x8F, 0x0D, 0x2A, 0x61, 0x33, 0x94, 0xE5, 0x72}};

/// There is late binding on platforms with type libraries only.
constexpr bool bindsLate = !std::is_same_v<DualInterfaceBase, IUnknown>;

struct NamedInterface {
    const char* name;
    const IID* iid;
};

std::vector<NamedInterface> Interfaces() {
    std::vector<NamedInterface> interfaces{{"IUnknown", &IID_IUnknown},
                                           {"IQMVCalculator", &IID_IQMVCalculator},
                                           {"IQMVCalculator2", &IID_IQMVCalculator2},
                                           {"ISupportErrorInfo", &IID_ISupportErrorInfo}};
    if (bindsLate) interfaces.push_back({"IDispatch", &IID_IDispatch});
    return interfaces;
}

std::vector<const IID*> OtherInterfaces() {
    std::vector<const IID*> others{&unknownIdentifier, &IID_IClassFactory, &CLSID_QMVCalculator};
    if (!bindsLate) others.push_back(&IID_IDispatch);
    return others;
}

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

/// Checks that the object refuses null pointers and interfaces that it does not have.
void ExpectOtherInterfacesRefused(IUnknown& object, const std::vector<const IID*>& others) {
    for (const IID* const iid : others) {
        void* answer = &object;
        EXPECT_EQ(object.QueryInterface(*iid, &answer), E_NOINTERFACE);
        EXPECT_EQ(answer, nullptr);
    }
    EXPECT_EQ(object.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(object.QueryInterface(unknownIdentifier, nullptr), E_POINTER);
}

/// Every test ends without an object of the component.
class ComponentTest : public PreparedCalculator {
protected:
    void TearDown() override { EXPECT_EQ(DllCanUnloadNow(), S_OK) << "an object or a lock is left"; }
};
class Identity : public ComponentTest {
protected:
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    void TearDown() override {
        EXPECT_EQ(References(*calculator.Get()), 1U);
        calculator = {};
        ComponentTest::TearDown();
    }
};
class ClassObject : public ComponentTest {};
class Module : public ComponentTest {};
class AggregatedCalculator : public ComponentTest {};

TEST_F(Identity, EveryInterfaceLeadsToEveryOtherAndBack) {
    for (const auto& [fromName, from] : Interfaces()) {
        const auto start = Ask(*calculator.Get(), *from);
        ASSERT_TRUE(start) << fromName;
        for (const auto& [toName, to] : Interfaces()) {
            const auto reached = Ask(*start.Get(), *to);
            ASSERT_TRUE(reached) << fromName << " to " << toName;
            EXPECT_EQ(Ask(*reached.Get(), *from).Get(), start.Get()) << fromName << " to " << toName << " and back";
        }
    }
}

TEST_F(Identity, IsOneForAllInterfacesAndAnotherForAnotherObject) {
    const auto identity = Ask(*calculator.Get(), IID_IUnknown);
    for (const auto& [name, iid] : Interfaces())
        EXPECT_EQ(Ask(*Ask(*calculator.Get(), *iid).Get(), IID_IUnknown).Get(), identity.Get()) << name;
    EXPECT_NE(Ask(*CreateCalculator().Get(), IID_IUnknown).Get(), identity.Get());
}

TEST_F(Identity, TheTwoInterfacesAndLateBindingAreOnePointer) {
    const IUnknown* const pointer = calculator.Get();
    EXPECT_EQ(Ask(*calculator.Get(), IID_IQMVCalculator2).Get(), pointer);
    EXPECT_EQ(Ask(*calculator.Get(), IID_IQMVCalculator).Get(), pointer);
    EXPECT_EQ(Ask(*calculator.Get(), IID_IDispatch).Get(), bindsLate ? pointer : nullptr);
}

TEST_F(Identity, RefusesOtherInterfacesAndClearsThePointer) {
    ExpectOtherInterfacesRefused(*calculator.Get(), OtherInterfaces());
}

TEST_F(Identity, CountsOneReferenceForEachQueryUntilItsRelease) {
    for (const auto& [name, iid] : Interfaces()) {
        {
            const auto another = Ask(*calculator.Get(), *iid);
            EXPECT_EQ(References(*calculator.Get()), 2U) << name;
            EXPECT_EQ(References(*another.Get()), 2U) << "one count for the whole object";
        }
        EXPECT_EQ(References(*calculator.Get()), 1U) << name;
    }
}

// The method of the second interface sets the error record too. The object does not report that: required.
TEST_F(Identity, ReportsErrorRecordsForTheFirstInterfaceOnly) {
    ComPointer<ISupportErrorInfo> support;
    ASSERT_EQ(calculator->QueryInterface(IID_ISupportErrorInfo, support.Receive()), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IQMVCalculator), S_OK);
    for (const IID* const other : {&IID_IQMVCalculator2, &IID_IUnknown, &IID_IDispatch, &IID_ISupportErrorInfo,
                                   &CLSID_QMVCalculator, &unknownIdentifier})
        EXPECT_EQ(support->InterfaceSupportsErrorInfo(*other), S_FALSE);
}

TEST_F(ClassObject, IsOneForTheModule) {
    const auto factory = CalculatorFactory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(CalculatorFactory().Get(), factory.Get());
    ComPointer<IUnknown> unknown;
    EXPECT_EQ(DllGetClassObject(CLSID_QMVCalculator, IID_IUnknown, unknown.Receive()), S_OK);
    EXPECT_EQ(Ask(*factory.Get(), IID_IUnknown).Get(), unknown.Get());
    EXPECT_EQ(Ask(*unknown.Get(), IID_IClassFactory).Get(), factory.Get());
    ExpectOtherInterfacesRefused(*factory.Get(), {&unknownIdentifier, &IID_IQMVCalculator});
}

TEST_F(ClassObject, IsRefusedForWrongClassesInterfacesAndPointers) {
    const struct {
        const char* why;
        const CLSID* clsid;
        const IID* iid;
        HRESULT code;
    } cases[] = {
        {"a class of another module", &unknownIdentifier, &IID_IClassFactory, CLASS_E_CLASSNOTAVAILABLE},
        {"an interface's identifier as the class", &IID_IQMVCalculator, &IID_IClassFactory, CLASS_E_CLASSNOTAVAILABLE},
        {"an interface of the calculator", &CLSID_QMVCalculator, &IID_IQMVCalculator, E_NOINTERFACE},
        {"an identifier that no interface has", &CLSID_QMVCalculator, &unknownIdentifier, E_NOINTERFACE}};
    for (const auto& [why, clsid, iid, code] : cases) {
        void* object = this;
        EXPECT_EQ(DllGetClassObject(*clsid, *iid, &object), code) << why;
        EXPECT_EQ(object, nullptr) << why;
    }
    EXPECT_EQ(DllGetClassObject(CLSID_QMVCalculator, IID_IClassFactory, nullptr), E_POINTER);
}

TEST_F(ClassObject, CreatesForEveryInterfaceAndRefusesOthers) {
    const auto factory = CalculatorFactory();
    for (const auto& [name, iid] : Interfaces()) {
        ComPointer<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, *iid, object.Receive()), S_OK) << name;
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(References(*object.Get()), 1U) << name;
    }
    for (const IID* const iid : OtherInterfaces()) {
        void* object = this;
        EXPECT_EQ(factory->CreateInstance(nullptr, *iid, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
    }
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Module, CannotUnloadWhileAnObjectLives) {
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    const auto one = CreateCalculator();
    {
        const auto other = CreateCalculator();
        const auto sameAgain = Ask(*other.Get(), IID_ISupportErrorInfo);
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "one object is left";
}

TEST_F(Module, CannotUnloadWhileItIsLocked) {
    for (const bool lock : {true, true, false}) {
        EXPECT_EQ(CalculatorFactory()->LockServer(lock), S_OK);
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "locked twice, unlocked once";
    }
    EXPECT_EQ(CalculatorFactory()->LockServer(false), S_OK);
}

/// An outer object with an interface of its own. It aggregates a calculator and passes other queries on to it.
class Outer final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown && iid != outersInterface) return inner->QueryInterface(iid, object);
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT TakeIn() { return CalculatorFactory()->CreateInstance(this, IID_IUnknown, inner.Receive()); }
    IUnknown* Face() { return this; }

    ULONG references = 1;
    ComPointer<IUnknown> inner;
};

TEST_F(AggregatedCalculator, IsCreatedAsIUnknownOnly) {
    Outer outer;
    for (const auto& [name, iid] : Interfaces()) {
        if (*iid == IID_IUnknown) continue;
        void* object = this;
        EXPECT_EQ(CalculatorFactory()->CreateInstance(&outer, *iid, &object), CLASS_E_NOAGGREGATION) << name;
        EXPECT_EQ(object, nullptr) << name;
    }
    EXPECT_EQ(CalculatorFactory()->CreateInstance(&outer, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(outer.references, 1U);
}

TEST_F(AggregatedCalculator, IsPartOfTheOuterObjectByEveryInterface) {
    Outer outer;
    ASSERT_EQ(outer.TakeIn(), S_OK);
    EXPECT_EQ(outer.references, 1U) << "the inner object must hold no reference to the outer one";
    for (const auto& [name, iid] : Interfaces()) {
        const auto face = Ask(outer, *iid);
        ASSERT_TRUE(face) << name;
        EXPECT_EQ(outer.references, 2U) << name << ": a reference to an inner interface must count at the outer object";
        EXPECT_EQ(Ask(*face.Get(), IID_IUnknown).Get(), outer.Face()) << name;
        EXPECT_EQ(Ask(*face.Get(), outersInterface).Get(), outer.Face()) << name;
    }
    EXPECT_EQ(outer.references, 1U);
}

TEST_F(AggregatedCalculator, HasASeparateIUnknownForItsOwner) {
    Outer outer;
    ASSERT_EQ(outer.TakeIn(), S_OK);
    EXPECT_NE(outer.inner.Get(), outer.Face());
    EXPECT_EQ(Ask(*outer.inner.Get(), IID_IUnknown).Get(), outer.inner.Get());
    ExpectOtherInterfacesRefused(*outer.inner.Get(), OtherInterfaces());
    EXPECT_EQ(References(*outer.inner.Get()), 1U);
    EXPECT_EQ(outer.references, 1U) << "references to the inner IUnknown must not count at the outer object";
}

TEST_F(AggregatedCalculator, WorksAndIsDeletedWithItsOwner) {
    Outer outer;
    ASSERT_EQ(outer.TakeIn(), S_OK);
    ComPointer<IQMVCalculator2> calculator;
    ASSERT_EQ(outer.QueryInterface(IID_IQMVCalculator2, calculator.Receive()), S_OK);
    EXPECT_EQ(Enter(*calculator.Get()), S_OK);
    EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    RequiredMoves moves{};
    EXPECT_EQ(calculator->CalculateMove(90.0, -180.0, &moves), S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{90.0, -180.0}));
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
}

} // namespace

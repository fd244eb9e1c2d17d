#include "tests/server/Client.h"

#include <iterator>

using namespace qmv40;

/// Creation, identity and lifetime through the entry points, without a registration.

namespace {

struct NamedInterface {
    const char* name;
    const IID* iid;
};

constexpr NamedInterface interfaces[] = {{"IUnknown", &IID_IUnknown},
                                         {"IQMVCalculator", &IID_IQMVCalculator},
                                         {"IDispatch", &IID_IDispatch},
                                         {"IQMVCalculator2", &IID_IQMVCalculator2},
                                         {"ISupportErrorInfo", &IID_ISupportErrorInfo}};

class ClassObject : public Client {};
class Module : public Client {};
class Identity : public Client {};
class AggregatedCalculator : public Client {};

TEST_F(ClassObject, IsOneForTheModule) {
    const auto factory = server.Factory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(server.Factory().Get(), factory.Get());
    ComPointer<IUnknown> unknown;
    EXPECT_EQ(server.GetClassObject(CLSID_QMVCalculator, IID_IUnknown, unknown.Receive()), S_OK);
    EXPECT_EQ(Ask(*factory.Get(), IID_IUnknown).Get(), unknown.Get());
    EXPECT_EQ(Ask(*unknown.Get(), IID_IClassFactory).Get(), factory.Get());
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
        {"an interface of the calculator for the class object", &CLSID_QMVCalculator, &IID_IQMVCalculator,
         E_NOINTERFACE},
        {"an identifier that no interface has", &CLSID_QMVCalculator, &unknownIdentifier, E_NOINTERFACE}};
    for (const auto& [why, clsid, iid, code] : cases) {
        void* object = this;
        EXPECT_EQ(server.GetClassObject(*clsid, *iid, &object), code) << why;
        EXPECT_EQ(object, nullptr) << why;
    }
    EXPECT_EQ(server.GetClassObject(CLSID_QMVCalculator, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ClassObject, CreatesForEveryInterfaceWithOneReference) {
    const auto factory = server.Factory();
    for (const auto& [name, iid] : interfaces) {
        ComPointer<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, *iid, object.Receive()), S_OK) << name;
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(References(*object.Get()), 1U) << name;
    }
}

TEST_F(ClassObject, DeletesAnObjectThatLacksTheInterface) {
    {
        const auto factory = server.Factory();
        void* object = this;
        EXPECT_EQ(factory->CreateInstance(nullptr, unknownIdentifier, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ClassObject, RefusesOtherInterfacesAndClearsThePointer) {
    const auto factory = server.Factory();
    void* object = this;
    EXPECT_EQ(factory->QueryInterface(unknownIdentifier, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Module, CannotUnloadWhileAnObjectLives) {
    {
        const auto one = server.Create();
        const auto other = server.Create();
        EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(Module, CannotUnloadWhileItIsLocked) {
    server.Factory()->LockServer(TRUE);
    server.Factory()->LockServer(TRUE);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    server.Factory()->LockServer(FALSE);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE) << "locked twice";
    server.Factory()->LockServer(FALSE);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(Identity, EveryInterfaceLeadsToEveryOtherAndBack) {
    const auto calculator = server.Create();
    for (const auto& [fromName, from] : interfaces) {
        const auto start = Ask(*calculator.Get(), *from);
        ASSERT_TRUE(start) << fromName;
        EXPECT_EQ(Ask(*start.Get(), *from).Get(), start.Get()) << fromName << " of itself";
        for (const auto& [toName, to] : interfaces) {
            const auto reached = Ask(*start.Get(), *to);
            ASSERT_TRUE(reached) << fromName << " to " << toName;
            EXPECT_EQ(Ask(*reached.Get(), *from).Get(), start.Get()) << fromName << " to " << toName << " and back";
        }
    }
}

TEST_F(Identity, IsOneForAllInterfacesAndAnotherForAnotherObject) {
    const auto calculator = server.Create();
    const auto identity = Ask(*calculator.Get(), IID_IUnknown);
    for (const auto& [name, iid] : interfaces)
        EXPECT_EQ(Ask(*Ask(*calculator.Get(), *iid).Get(), IID_IUnknown).Get(), identity.Get()) << name;
    EXPECT_NE(Ask(*server.Create().Get(), IID_IUnknown).Get(), identity.Get());
}

TEST_F(Identity, TheTwoInterfacesAndLateBindingAreOnePointer) {
    ComPointer<IQMVCalculator> calculator;
    ASSERT_EQ(server.Factory()->CreateInstance(nullptr, IID_IQMVCalculator, calculator.Receive()), S_OK);
    const IUnknown* const pointer = calculator.Get();
    EXPECT_EQ(Ask(*calculator.Get(), IID_IQMVCalculator2).Get(), pointer);
    EXPECT_EQ(Ask(*calculator.Get(), IID_IDispatch).Get(), pointer);
    EXPECT_EQ(Ask(*calculator.Get(), IID_IQMVCalculator).Get(), pointer);
}

TEST_F(Identity, RefusesOtherInterfacesAndClearsThePointer) {
    const auto calculator = server.Create();
    for (const IID* const iid : {&unknownIdentifier, &IID_IClassFactory, &CLSID_QMVCalculator, &IID_NULL}) {
        void* object = this;
        EXPECT_EQ(calculator->QueryInterface(*iid, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
    }
    EXPECT_EQ(calculator->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(References(*calculator.Get()), 1U);
}

TEST_F(Identity, CountsOneReferenceForEachQueryUntilItsRelease) {
    const auto calculator = server.Create();
    for (const auto& [name, iid] : interfaces) {
        {
            const auto answer = Ask(*calculator.Get(), *iid);
            EXPECT_EQ(References(*calculator.Get()), 2U) << name;
        }
        EXPECT_EQ(References(*calculator.Get()), 1U) << name;
    }
}

TEST_F(Identity, HasNoReferencesFromTheResultsOfItsMethods) {
    const auto calculator = server.Create();
    {
        const auto info = Received<ITypeInfo>([&](ITypeInfo** out) { return calculator->GetTypeInfo(0, 0, out); });
        XYZData pole{};
        EXPECT_EQ(calculator->GetPoleSpherePosition(&pole), S_OK);
        EXPECT_EQ(References(*calculator.Get()), 1U);
    }
    EXPECT_EQ(References(*calculator.Get()), 1U);
}

/// An outer object with the interface IPersist. It aggregates a calculator and passes queries for other interfaces on
/// to it.
class Outer final : public IPersist {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPersist)) return inner->QueryInterface(iid, object);
        *object = static_cast<IPersist*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }

    IUnknown* Face() { return this; }

    ULONG references = 1;
    ComPointer<IUnknown> inner;
};

TEST_F(AggregatedCalculator, IsCreatedAsIUnknownOnly) {
    for (const auto& [name, iid] : interfaces) {
        if (IsEqualIID(*iid, IID_IUnknown)) continue;
        Outer outer;
        void* object = this;
        EXPECT_EQ(server.Factory()->CreateInstance(&outer, *iid, &object), CLASS_E_NOAGGREGATION) << name;
        EXPECT_EQ(object, nullptr) << name;
        EXPECT_EQ(outer.references, 1U) << name;
    }
    Outer outer;
    EXPECT_EQ(server.Factory()->CreateInstance(&outer, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(AggregatedCalculator, IsPartOfTheOuterObjectByEveryInterface) {
    Outer outer;
    ASSERT_EQ(server.Factory()->CreateInstance(&outer, IID_IUnknown, outer.inner.Receive()), S_OK);
    EXPECT_EQ(outer.references, 1U) << "the inner object must hold no reference to the outer one";
    for (const auto& [name, iid] : interfaces) {
        const auto face = Ask(outer, *iid);
        ASSERT_TRUE(face) << name;
        EXPECT_EQ(outer.references, 2U) << name << ": a reference to an inner interface must count at the outer object";
        EXPECT_EQ(Ask(*face.Get(), IID_IUnknown).Get(), outer.Face()) << name;
        EXPECT_EQ(Ask(*face.Get(), IID_IPersist).Get(), outer.Face())
            << name << " must give the outer object's interface";
    }
    EXPECT_EQ(outer.references, 1U);
}

TEST_F(AggregatedCalculator, HasASeparateIUnknownForItsOwner) {
    Outer outer;
    ASSERT_EQ(server.Factory()->CreateInstance(&outer, IID_IUnknown, outer.inner.Receive()), S_OK);
    EXPECT_NE(outer.inner.Get(), outer.Face());
    EXPECT_EQ(Ask(*outer.inner.Get(), IID_IUnknown).Get(), outer.inner.Get());
    EXPECT_EQ(References(*outer.inner.Get()), 1U);
    EXPECT_EQ(outer.references, 1U) << "references to the inner IUnknown must not count at the outer object";
    void* object = this;
    EXPECT_EQ(outer.inner->QueryInterface(unknownIdentifier, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(outer.inner->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(AggregatedCalculator, WorksAndIsDeletedWithItsOwner) {
    {
        Outer outer;
        ASSERT_EQ(server.Factory()->CreateInstance(&outer, IID_IUnknown, outer.inner.Receive()), S_OK);
        ComPointer<IQMVCalculator2> calculator;
        ASSERT_EQ(outer.QueryInterface(IID_IQMVCalculator2, calculator.Receive()), S_OK);
        EXPECT_EQ(Enter(*calculator.Get()), S_OK);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
        RequiredMoves moves{};
        EXPECT_EQ(calculator->CalculateMove(90.0, -180.0, &moves), S_OK);
        double a = 0.0;
        double b = 0.0;
        EXPECT_EQ(calculator->GetCurrentHeadPosition(&a, &b), S_OK);
        EXPECT_EQ(a, 90.0);
        EXPECT_EQ(b, -180.0);
        EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

} // namespace

#pragma once

#include "tests/support/Calculator.h"
#include "tests/support/SettingsFixture.h"
#include "tests/support/SimulatedHead.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <type_traits>
#include <utility>

/// What a client has of the component: a file beside its own program, loaded when it asks, linked to nothing.

/// The component's file.
std::filesystem::path ServerPath();

/// Whether this program sees what the component throws. Both carry the compiler's runtime. On x64 it finds the frames
/// of every image in the system's tables; in 32-bit code each copy of it knows the frames of its own image alone, and a
/// refused CalculateMove ends the program: docs/callers.md.
inline constexpr bool catchesWhatIsThrown = sizeof(void*) == 8;

/// The component loaded from a file by hand, as one does with nothing registered.
class LoadedServer {
public:
    explicit LoadedServer(const std::filesystem::path& path = ServerPath());
    LoadedServer(const LoadedServer&) = delete;
    LoadedServer& operator=(const LoadedServer&) = delete;
    ~LoadedServer();

    HMODULE Module() const noexcept { return module; }

    HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** object) const;
    HRESULT CanUnloadNow() const;
    HRESULT Register() const;
    HRESULT Unregister() const;

    qmv40::ComPointer<IClassFactory> Factory() const;
    qmv40::ComPointer<IQMVCalculator2> Create() const;

private:
    template <class Function> Function* Entry(const char* name) const;

    HMODULE module;
};

/// The thread's apartment for the length of a scope.
class Apartment {
public:
    explicit Apartment(COINIT kind = COINIT_APARTMENTTHREADED) {
        if (FAILED(CoInitializeEx(nullptr, static_cast<DWORD>(kind)))) throw std::runtime_error("no apartment");
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

/// Asks `from` for `iid`. The interfaces all begin with those of IUnknown.
inline qmv40::ComPointer<IUnknown> Ask(IUnknown& from, REFIID iid) {
    qmv40::ComPointer<IUnknown> answer;
    from.QueryInterface(iid, answer.Receive());
    return answer;
}

/// Whether the object lives in another apartment.
inline bool IsProxy(IUnknown& object) { return static_cast<bool>(Ask(object, IID_IMultiQI)); }

/// The references that `object` has besides the one that counting takes.
inline ULONG References(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

/// What a call hands out through a typed pointer. The call must succeed.
template <class Interface, class Call> qmv40::ComPointer<Interface> Received(Call&& call) {
    Interface* received = nullptr;
    EXPECT_EQ(std::forward<Call>(call)(&received), S_OK);
    return qmv40::ComPointer<Interface>(received);
}

/// No interface of anybody's.
inline constexpr GUID unknownIdentifier{0x9C0A7C1D, 0x5B1E, 0x4E7B, {0x8F, 0x0D, 0x2A, 0x61, 0x33, 0x94, 0xE5, 0x70}};

/// A single-threaded client with the component loaded, and no settings but the built-in ones. Nothing is registered
/// unless the test does it, and nothing is left so.
class Client : public testing::Test {
protected:
    Client();
    ~Client() override;

    /// A head mounted at (100, -200, 300), turned by 10 degrees.
    static SimulatedHead Head();
    /// Enters that head's geometry.
    static HRESULT Enter(IQMVCalculator& calculator);
    qmv40::ComPointer<IQMVCalculator2> WithGeometry() const;
    /// Ready to plan.
    qmv40::ComPointer<IQMVCalculator2> At(double a, double b) const;

    Apartment apartment;
    SettingsFixture settings;
    LoadedServer server;
};

/// The same with the component registered.
class RegisteredClient : public Client {
protected:
    void SetUp() override { ASSERT_EQ(server.Register(), S_OK); }
    void TearDown() override {
        CoFreeUnusedLibraries();
        EXPECT_EQ(server.Unregister(), S_OK);
    }

    /// Creates through the registration; null when that fails.
    static qmv40::ComPointer<IQMVCalculator2> CreateRegistered(REFCLSID clsid = CLSID_QMVCalculator) {
        qmv40::ComPointer<IQMVCalculator2> calculator;
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, calculator.Receive());
        return calculator;
    }
};

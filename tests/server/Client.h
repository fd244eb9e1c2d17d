#pragma once

#include "tests/support/PreparedCalculator.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

/// The client's side of the component: its file is beside the test program and is loaded at run time.

/// The component's file.
std::filesystem::path ServerPath();

/// Whether this program can catch the component's exceptions. The program and the component each have their own copy of
/// the compiler's runtime. On x64 the runtime finds the functions of all images in the system's tables. In 32-bit code
/// it knows those of its own image only, and a refused CalculateMove ends the program: see docs/callers.md.
inline constexpr bool catchesWhatIsThrown = sizeof(void*) == 8;

/// The component, loaded from its file without a registration.
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

/// The thread's apartment during a scope.
class Apartment {
public:
    explicit Apartment(COINIT kind = COINIT_APARTMENTTHREADED) {
        if (FAILED(CoInitializeEx(nullptr, static_cast<DWORD>(kind)))) throw std::runtime_error("no apartment");
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

/// Queries `from` for `iid`. All interfaces begin with the methods of IUnknown.
inline qmv40::ComPointer<IUnknown> Ask(IUnknown& from, REFIID iid) {
    qmv40::ComPointer<IUnknown> answer;
    from.QueryInterface(iid, answer.Receive());
    return answer;
}

/// Whether the object belongs to another apartment.
inline bool IsProxy(IUnknown& object) { return static_cast<bool>(Ask(object, IID_IMultiQI)); }

/// The number of references to `object`.
inline ULONG References(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

/// The pointer that a call returns. The call must succeed.
template <class Interface, class Call> qmv40::ComPointer<Interface> Received(Call&& call) {
    Interface* received = nullptr;
    EXPECT_EQ(std::forward<Call>(call)(&received), S_OK);
    return qmv40::ComPointer<Interface>(received);
}

/// An identifier that no interface has.
inline constexpr GUID unknownIdentifier{0x9C0A7C1D, 0x5B1E, 0x4E7B, {0x8F, 0x0D, 0x2A, 0x61, 0x33, 0x94, 0xE5, 0x70}};

/// A single-threaded client that has loaded the component. There are no settings. Nothing is registered, except by the
/// test itself; the registration is removed at the end. In these programs DllGetClassObject and DllCanUnloadNow are the
/// entry points of the loaded component.
class Client : public PreparedCalculator {
protected:
    Client();
    ~Client() override;

    Apartment apartment;
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

    /// Creates an object through the registration; null if that fails.
    static qmv40::ComPointer<IQMVCalculator2> CreateRegistered(REFCLSID clsid = CLSID_QMVCalculator) {
        qmv40::ComPointer<IQMVCalculator2> calculator;
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, calculator.Receive());
        return calculator;
    }
};

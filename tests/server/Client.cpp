#include "tests/server/Client.h"

#include "tests/server/Registry.h"

using namespace qmv40;

std::filesystem::path ServerPath() {
    wchar_t program[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program, program + length).parent_path() / L"CoQMV40Calculator.dll";
}

LoadedServer::LoadedServer(const std::filesystem::path& path) : module(LoadLibraryW(path.c_str())) {
    if (module == nullptr) throw std::runtime_error("the component cannot be loaded from " + path.string());
}

LoadedServer::~LoadedServer() { FreeLibrary(module); }

template <class Function> Function* LoadedServer::Entry(const char* name) const {
    const auto entry = reinterpret_cast<void (*)()>(GetProcAddress(module, name));
    if (entry == nullptr) throw std::runtime_error(std::string("no entry point ") + name);
    return reinterpret_cast<Function*>(entry);
}

HRESULT LoadedServer::GetClassObject(REFCLSID clsid, REFIID iid, void** object) const {
    return Entry<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid, object);
}

HRESULT LoadedServer::CanUnloadNow() const { return Entry<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")(); }

HRESULT LoadedServer::Register() const { return Entry<HRESULT STDMETHODCALLTYPE()>("DllRegisterServer")(); }

HRESULT LoadedServer::Unregister() const { return Entry<HRESULT STDMETHODCALLTYPE()>("DllUnregisterServer")(); }

ComPointer<IClassFactory> LoadedServer::Factory() const {
    ComPointer<IClassFactory> factory;
    GetClassObject(CLSID_QMVCalculator, IID_IClassFactory, factory.Receive());
    return factory;
}

ComPointer<IQMVCalculator2> LoadedServer::Create() const {
    ComPointer<IQMVCalculator2> calculator;
    const auto factory = Factory();
    if (factory) factory->CreateInstance(nullptr, IID_IQMVCalculator2, calculator.Receive());
    return calculator;
}

// A killed test program may have left its registration.
Client::Client() { RemoveRegistration(); }

Client::~Client() { RemoveRegistration(); }

namespace {

const LoadedServer& Delivered() {
    static const LoadedServer server;
    return server;
}

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return Delivered().GetClassObject(clsid, iid, object);
}

STDAPI DllCanUnloadNow() { return Delivered().CanUnloadNow(); }

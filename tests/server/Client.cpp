#include "tests/server/Client.h"

#include "tests/server/Registry.h"
#include "tests/support/AlignmentArray.h"

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

SimulatedHead Client::Head() {
    SimulatedHead head;
    head.pole = {100.0, -200.0, 300.0};
    head.mountingAngle = 10.0;
    return head;
}

HRESULT Client::Enter(IQMVCalculator& calculator) {
    AlignmentArray aAxisPoints(Head().ASet(45.0));
    AlignmentArray bAxisPoints(Head().BSet(60.0));
    return calculator.EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address());
}

ComPointer<IQMVCalculator2> Client::WithGeometry() const {
    auto calculator = server.Create();
    EXPECT_EQ(Enter(*calculator.Get()), S_OK);
    return calculator;
}

ComPointer<IQMVCalculator2> Client::At(double a, double b) const {
    auto calculator = WithGeometry();
    EXPECT_EQ(calculator->SetCurrentHeadPosition(a, b), S_OK);
    return calculator;
}

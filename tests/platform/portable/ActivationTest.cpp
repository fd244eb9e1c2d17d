#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

using namespace qmv40;

namespace {

constexpr CLSID announced{0xB1B0A1C0, 0x0001, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 1}};
constexpr CLSID failing{0xB1B0A1C0, 0x0002, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 2}};
constexpr CLSID unknown{0xB1B0A1C0, 0x0003, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 3}};

/// A factory that records its calls. It returns itself as the created object.
class Factory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        lastOuter = outer;
        if (outer != nullptr && iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
        return QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    std::atomic<ULONG> references{0};
    IUnknown* lastOuter = nullptr;
};

Factory factory;
CLSID clsidAskedFor;

HRESULT GiveFactory(REFCLSID clsid, REFIID iid, void** object) {
    clsidAskedFor = clsid;
    return factory.QueryInterface(iid, object);
}

HRESULT RefuseFactory(REFCLSID, REFIID, void** object) {
    *object = nullptr;
    return CLASS_E_CLASSNOTAVAILABLE;
}

ClassAnnouncement first{announced, L"Test.Class.1", L"Test.Class", GiveFactory};
ClassAnnouncement second{failing, L"Test.Failing.1", nullptr, RefuseFactory};
// Announced by a constructor that runs before main, as in a module.
const bool areAnnounced = (AnnounceClass(first), AnnounceClass(second), true);

void* const somewhere = &factory;

TEST(Activation, CreatesAnObjectAndReleasesTheFactory) {
    for (const DWORD context : {CLSCTX_INPROC_SERVER, CLSCTX_ALL}) {
        void* object = nullptr;
        ASSERT_EQ(CoCreateInstance(announced, nullptr, context, IID_IUnknown, &object), S_OK);
        EXPECT_EQ(clsidAskedFor, announced);
        EXPECT_EQ(factory.references, 1U) << "only the reference of the created object may be left";
        static_cast<IUnknown*>(object)->Release();
    }
}

TEST(Activation, FailsWithANullObject) {
    const struct {
        CLSID clsid;
        DWORD context;
        IID iid;
        HRESULT result;
        const char* why;
    } cases[] = {
        {unknown, CLSCTX_ALL, IID_IUnknown, REGDB_E_CLASSNOTREG, "no module announced the class"},
        {announced, 0x4, IID_IUnknown, REGDB_E_CLASSNOTREG, "the context excludes in-process servers"},
        {failing, CLSCTX_ALL, IID_IUnknown, CLASS_E_CLASSNOTAVAILABLE, "the module refuses"},
        {announced, CLSCTX_ALL, IID_IDispatch, E_NOINTERFACE, "the object has no such interface"},
    };
    for (const auto& [clsid, context, iid, result, why] : cases) {
        void* object = somewhere;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, context, iid, &object), result) << why;
        EXPECT_EQ(object, nullptr) << why;
        EXPECT_EQ(factory.references, 0U) << why;
    }
    EXPECT_EQ(CoCreateInstance(announced, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
}

TEST(Activation, PassesTheOuterObjectToTheFactory) {
    Factory outer;
    void* object = somewhere;
    EXPECT_EQ(CoCreateInstance(announced, &outer, CLSCTX_ALL, IID_IClassFactory, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory.lastOuter, &outer);
    ASSERT_EQ(CoCreateInstance(announced, &outer, CLSCTX_ALL, IID_IUnknown, &object), S_OK);
    static_cast<IUnknown*>(object)->Release();
    EXPECT_EQ(factory.references, 0U);
}

TEST(Activation, FindsClassesByTheirNames) {
    for (const wchar_t* const name : {L"Test.Class.1", L"Test.Class", L"TEST.class.1"}) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(name, &clsid), S_OK);
        EXPECT_EQ(clsid, announced);
    }
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(L"Test.Failing.1", &clsid), S_OK);
    EXPECT_EQ(clsid, failing);
}

TEST(Activation, RefusesOtherNames) {
    for (const wchar_t* const name : {L"Test.Class.2", L"Test.Clas", L"Test.Class.", L"", L"Test.Failing"}) {
        CLSID clsid = announced;
        EXPECT_EQ(CLSIDFromProgID(name, &clsid), CO_E_CLASSSTRING);
        EXPECT_EQ(clsid, CLSID{});
    }
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(nullptr, &clsid), E_INVALIDARG);
    EXPECT_EQ(CLSIDFromProgID(L"Test.Class", nullptr), E_INVALIDARG);
}

TEST(Activation, AcceptsAnnouncementsFromManyThreadsAtOnce) {
    static std::vector<ClassAnnouncement> announcements;
    for (std::uint32_t i = 0; i < 400; ++i)
        announcements.push_back({CLSID{i, 1, 2, {}}, nullptr, nullptr, GiveFactory});
    std::vector<std::thread> threads;
    for (std::size_t start = 0; start < 4; ++start)
        threads.emplace_back([start] {
            for (std::size_t i = start; i < announcements.size(); i += 4) {
                AnnounceClass(announcements[i]);
                CLSID clsid{};
                EXPECT_EQ(CLSIDFromProgID(L"Test.Class", &clsid), S_OK);
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const ClassAnnouncement& announcement : announcements) {
        void* object = nullptr;
        ASSERT_EQ(CoCreateInstance(announcement.clsid, nullptr, CLSCTX_ALL, IID_IUnknown, &object), S_OK);
        static_cast<IUnknown*>(object)->Release();
    }
}

} // namespace

#include "errors/QMVObjectHelper.h"
#include "errors/RaiseError.h"
#include "interface/Identifiers.h"
#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace qmv40;

/// How the error record is filled, what happens when a step fails, and how an object is created. The linker directs the
/// component's platform calls to this program.

namespace {

struct Platform {
    std::vector<std::string> calls;
    HRESULT asked = S_OK; ///< the result of QueryInterface for IErrorInfo
    HRESULT set = S_OK;   ///< the result of SetErrorInfo
    DWORD context = 0;    ///< the context with which an object was requested
} platform;

/// An error record that lists its calls. Its references are counted, but it does not delete itself.
class Record final : public ICreateErrorInfo, public IErrorInfo {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        platform.calls.emplace_back(iid == IID_IErrorInfo ? "QueryInterface" : "another interface");
        *object = nullptr;
        if (FAILED(platform.asked)) return platform.asked;
        *object = static_cast<IErrorInfo*>(this);
        ++references;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR) override { return Note("SetSource"); }
    HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR) override { return Note("SetDescription"); }
    HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR) override { return Note("SetHelpFile"); }
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD) override { return Note("SetHelpContext"); }
    HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) override {
        return Note(guid == IID_IQMVCalculator ? "SetGUID" : "another identifier");
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_NOTIMPL; }

    ULONG references = 0;

private:
    static HRESULT Note(const char* call) {
        platform.calls.emplace_back(call);
        return S_OK;
    }
} record;

} // namespace

HRESULT GiveRecord(ICreateErrorInfo** builder) noexcept __asm__("__wrap_CreateErrorInfo");
HRESULT GiveRecord(ICreateErrorInfo** builder) noexcept {
    record.AddRef();
    *builder = &record;
    return S_OK;
}

HRESULT TakeRecord(ULONG reserved, IErrorInfo* info) noexcept __asm__("__wrap_SetErrorInfo");
HRESULT TakeRecord(ULONG reserved, IErrorInfo* info) noexcept {
    platform.calls.push_back(reserved == 0 && info == &record ? "SetErrorInfo" : "another record");
    return platform.set;
}

HRESULT RefuseObject(REFCLSID, IUnknown*, DWORD context, REFIID, void**) noexcept __asm__("__wrap_CoCreateInstance");
HRESULT RefuseObject(REFCLSID, IUnknown*, DWORD context, REFIID, void**) noexcept {
    platform.context = context;
    return E_FAIL;
}

namespace {

HRESULT CodeOf(const std::function<void()>& raising) {
    try {
        raising();
    } catch (const HRESULT code) {
        return code;
    }
    return S_OK;
}

class FailingRecords : public testing::Test {
protected:
    FailingRecords() { platform = {}; }
    ~FailingRecords() override { EXPECT_EQ(record.references, 0U) << "every reference must be released"; }

    static HRESULT Raise() {
        return CodeOf([] { RaiseError(E_UNEXPECTED, L"a source", L"a description"); });
    }
    const std::vector<std::string> filled{"SetSource",      "SetDescription", "SetHelpFile",
                                          "SetHelpContext", "SetGUID",        "QueryInterface"};
};

TEST_F(FailingRecords, AreFilledInTheRequiredOrder) {
    EXPECT_EQ(Raise(), E_UNEXPECTED);
    std::vector<std::string> expected = filled;
    expected.emplace_back("SetErrorInfo");
    EXPECT_EQ(platform.calls, expected);
}

TEST_F(FailingRecords, WithoutIErrorInfoRaiseTheCodeOfTheQuery) {
    platform.asked = E_NOINTERFACE;
    EXPECT_EQ(Raise(), E_NOINTERFACE);
    EXPECT_EQ(platform.calls, filled) << "SetErrorInfo must not be called";
}

TEST_F(FailingRecords, ThatCannotBeSetRaiseTheCodeOfSetErrorInfo) {
    platform.set = E_FAIL;
    EXPECT_EQ(Raise(), E_FAIL);
}

TEST(CreateObject, AcceptsInProcessLocalAndRemoteServers) {
    platform = {};
    void* object = nullptr;
    const HRESULT code = CodeOf([&] { QMVObjectHelper::CREATE_OBJECT(IID_IUnknown, IID_IUnknown, &object); });
    EXPECT_EQ(code, QMV_E_OBJECT_NOT_CREATED);
    EXPECT_EQ(platform.context, 23U); // in-process server 1, handler 2, local server 4, remote server 16
}

} // namespace

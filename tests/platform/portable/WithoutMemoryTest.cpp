#include "platform/Automation.h"
#include "platform/SettingsStore.h"
#include "tests/platform/ProfileOnDisk.h"
#include "tests/support/FailingAllocations.h"
#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

using namespace qmv40;

/// Each call is repeated: first its first allocation fails, then its second, and so on until the call succeeds. The
/// sanitizers find leaks.

namespace {

/// Calls `attempt` again and again; in each call the next allocation fails. `attempt` gets a function that returns
/// whether an allocation failed. It must be called directly after the call under test.
template <typename Attempt> void AtEveryAllocation(Attempt attempt) {
    bool wasReached = true;
    long count = 0;
    for (; wasReached && count < 1000; ++count) {
        SCOPED_TRACE(count);
        FailingAllocations failing(count);
        wasReached = attempt([&] { return failing.Stop(); });
    }
    EXPECT_GT(count, 1) << "the call needs no memory";
    EXPECT_LT(count, 1000) << "the call never succeeds";
}

TEST(WithoutMemory, TextsAreNull) {
    AtEveryAllocation([](auto ranOut) {
        const BSTR text = SysAllocString(L"text");
        const bool didRunOut = ranOut();
        EXPECT_EQ(text == nullptr, didRunOut);
        SysFreeString(text);
        return didRunOut;
    });
}

TEST(WithoutMemory, ArraysAreNotCreated) {
    AtEveryAllocation([](auto ranOut) {
        SAFEARRAY* array = nullptr;
        const HRESULT described = SafeArrayAllocDescriptor(1, &array);
        const HRESULT result = SUCCEEDED(described) ? SafeArrayAllocData(array) : described;
        EXPECT_EQ(result, ranOut() ? E_OUTOFMEMORY : S_OK);
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
        return result != S_OK;
    });
}

TEST(WithoutMemory, ArraysAreNotCopied) {
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(SafeArrayAllocDescriptor(1, &array), S_OK);
    array->cbElements = sizeof(double);
    array->rgsabound[0] = {5, 0};
    ASSERT_EQ(SafeArrayAllocData(array), S_OK);
    AtEveryAllocation([&](auto ranOut) {
        SAFEARRAY* copy = array;
        const HRESULT result = SafeArrayCopy(array, &copy);
        const bool didRunOut = ranOut();
        EXPECT_EQ(result, didRunOut ? E_OUTOFMEMORY : S_OK);
        EXPECT_EQ(copy == nullptr, didRunOut);
        EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
        return didRunOut;
    });
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(WithoutMemory, ErrorRecordsAreNotCreated) {
    AtEveryAllocation([](auto ranOut) {
        ICreateErrorInfo* record = nullptr;
        const HRESULT result = CreateErrorInfo(&record);
        const bool didRunOut = ranOut();
        EXPECT_EQ(result, didRunOut ? E_OUTOFMEMORY : S_OK);
        if (record != nullptr) record->Release();
        return didRunOut;
    });
}

TEST(WithoutMemory, ErrorRecordsRefuseToSetAndReturnTexts) {
    ICreateErrorInfo* record = nullptr;
    ASSERT_EQ(CreateErrorInfo(&record), S_OK);
    std::wstring source = L"source";
    AtEveryAllocation([&](auto ranOut) {
        const HRESULT result = record->SetSource(source.data());
        const bool didRunOut = ranOut();
        EXPECT_EQ(result, didRunOut ? E_OUTOFMEMORY : S_OK);
        return didRunOut;
    });
    void* read = nullptr;
    ASSERT_EQ(record->QueryInterface(IID_IErrorInfo, &read), S_OK);
    AtEveryAllocation([&](auto ranOut) {
        BSTR text = nullptr;
        const HRESULT result = static_cast<IErrorInfo*>(read)->GetSource(&text);
        const bool didRunOut = ranOut();
        EXPECT_EQ(result, didRunOut ? E_OUTOFMEMORY : S_OK);
        EXPECT_EQ(text == nullptr, didRunOut);
        SysFreeString(text);
        return didRunOut;
    });
    static_cast<IErrorInfo*>(read)->Release();
    record->Release();
}

/// Whether `call` threw std::bad_alloc.
template <typename Call> bool ThrowsBadAlloc(Call call) {
    try {
        call();
        return false;
    } catch (const std::bad_alloc&) {
        return true;
    }
}

TEST(WithoutMemory, ProfilesAreReadWholeOrNotAtAll) {
    const ProfileOnDisk profile;
    profile.Put("[SAFEPOSITION OF THE HEAD]\r\nRequiredRotationAroundZ=1\r\n");
    const std::wstring path = profile.Path().wstring();
    AtEveryAllocation([&](auto ranOut) {
        char buffer[20] = "untouched";
        const bool threw = ThrowsBadAlloc([&] {
            ReadProfileText(L"SAFEPOSITION OF THE HEAD", L"RequiredRotationAroundZ", "default", buffer, path.c_str());
        });
        const bool didRunOut = ranOut();
        EXPECT_STREQ(buffer, threw ? "untouched" : "1");
        EXPECT_EQ(threw, didRunOut);
        return didRunOut;
    });
}

TEST(WithoutMemory, ProfilesAreWrittenWholeOrNotAtAll) {
    const ProfileOnDisk profile;
    const std::string before = "[HEADCENTRE]\r\nX=1\r\n",
                      after = "[HEADCENTRE]\r\nX=1\r\nRequiredRotationAroundZ=2\r\n";
    const std::wstring path = profile.Path().wstring();
    bool didRunOut = true;
    for (long count = 0; didRunOut; ++count) {
        SCOPED_TRACE(count);
        profile.Put(before);
        bool isWritten = false;
        FailingAllocations failing(count);
        const bool threw = ThrowsBadAlloc(
            [&] { isWritten = WriteProfileText(L"HEADCENTRE", L"RequiredRotationAroundZ", "2", path.c_str()); });
        didRunOut = failing.Stop();
        ASSERT_LT(count, 1000);
        EXPECT_EQ(didRunOut, threw) << "a failed allocation must not be hidden";
        EXPECT_EQ(profile.Content(), isWritten ? after : before);
        EXPECT_EQ(profile.FilesInFolder(), 1) << "no copy may be left";
    }
}

TEST(WithoutMemory, SettingsAreReadOrTheCallThrows) {
    SettingsFixture settings;
    settings.SetText("Head Centre To Drive Cup X Offset", "-7.25");
    AtEveryAllocation([&](auto ranOut) {
        char buffer[20] = "";
        DWORD type = 0, length = 0;
        LSTATUS status = ERROR_MORE_DATA;
        const bool threw = ThrowsBadAlloc([&] {
            status = SettingsKey(SettingsFixture::key).Query("Head Centre To Drive Cup X Offset", buffer, type, length);
        });
        const bool didRunOut = ranOut();
        EXPECT_EQ(threw, didRunOut);
        EXPECT_EQ(status, threw ? ERROR_MORE_DATA : ERROR_SUCCESS);
        return didRunOut;
    });
}

} // namespace

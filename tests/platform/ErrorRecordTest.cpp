#include "platform/Automation.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

struct Release {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface> using Owned = std::unique_ptr<Interface, Release>;

template <typename Interface> Owned<Interface> Ask(IUnknown& object, REFIID iid) {
    void* answer = nullptr;
    EXPECT_EQ(object.QueryInterface(iid, &answer), S_OK);
    return Owned<Interface>(static_cast<Interface*>(answer));
}

Owned<ICreateErrorInfo> NewRecord() {
    ICreateErrorInfo* record = nullptr;
    EXPECT_EQ(CreateErrorInfo(&record), S_OK);
    return Owned<ICreateErrorInfo>(record);
}

Owned<IErrorInfo> RecordOf(const wchar_t* description) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    std::wstring text(description);
    EXPECT_EQ(record->SetDescription(text.data()), S_OK);
    return Ask<IErrorInfo>(*record, IID_IErrorInfo);
}

Owned<IErrorInfo> Taken() {
    IErrorInfo* record = nullptr;
    GetErrorInfo(0, &record);
    return Owned<IErrorInfo>(record);
}

std::wstring Received(BSTR text) {
    const std::wstring copy(text == nullptr ? L"(null)" : text);
    SysFreeString(text);
    return copy;
}

std::wstring DescriptionOf(IErrorInfo& record) {
    BSTR text = nullptr;
    EXPECT_EQ(record.GetDescription(&text), S_OK);
    return Received(text);
}

ULONG ReferencesOf(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

constexpr GUID someGuid{0x2C7D91E3, 0x6F4A, 0x4B28, {0x8D, 0x35, 0x9E, 0x1A, 0x7C, 0x0B, 0x4F, 0x52}};

TEST(ErrorRecord, ReturnsEverythingThatWasSet) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    std::wstring source = L"RoundThePole::HeadCentre", description = L"Step \x2014 failed", helpFile = L"Unspecified";
    EXPECT_EQ(record->SetSource(source.data()), S_OK);
    EXPECT_EQ(record->SetDescription(description.data()), S_OK);
    EXPECT_EQ(record->SetHelpFile(helpFile.data()), S_OK);
    EXPECT_EQ(record->SetHelpContext(42), S_OK);
    EXPECT_EQ(record->SetGUID(someGuid), S_OK);
    source[0] = description[0] = helpFile[0] = L'!'; // the record has copies

    const Owned<IErrorInfo> read = Ask<IErrorInfo>(*record, IID_IErrorInfo);
    BSTR text = nullptr;
    EXPECT_EQ(read->GetSource(&text), S_OK);
    EXPECT_EQ(Received(text), L"RoundThePole::HeadCentre");
    EXPECT_EQ(read->GetDescription(&text), S_OK);
    EXPECT_EQ(Received(text), L"Step \x2014 failed");
    EXPECT_EQ(read->GetHelpFile(&text), S_OK);
    EXPECT_EQ(Received(text), L"Unspecified");
    DWORD context = 0;
    EXPECT_EQ(read->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 42U);
    GUID guid{};
    EXPECT_EQ(read->GetGUID(&guid), S_OK);
    EXPECT_TRUE(guid == someGuid);
}

TEST(ErrorRecord, ReturnsNullTextsAndNoHelpContextAtFirst) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    const Owned<IErrorInfo> read = Ask<IErrorInfo>(*record, IID_IErrorInfo);
    OLECHAR somewhere = L'x';
    for (auto getText : {&IErrorInfo::GetSource, &IErrorInfo::GetDescription, &IErrorInfo::GetHelpFile}) {
        BSTR text = &somewhere;
        EXPECT_EQ((read.get()->*getText)(&text), S_OK);
        EXPECT_EQ(text, nullptr);
    }
    DWORD context = 7;
    EXPECT_EQ(read->GetHelpContext(&context), S_OK);
    EXPECT_EQ(context, 0U);
}

TEST(ErrorRecord, KeepsTheLastTextUntilNullIsSet) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    const Owned<IErrorInfo> read = Ask<IErrorInfo>(*record, IID_IErrorInfo);
    std::wstring first = L"first", second = L"second", empty;
    EXPECT_EQ(record->SetDescription(first.data()), S_OK);
    EXPECT_EQ(record->SetDescription(second.data()), S_OK);
    EXPECT_EQ(DescriptionOf(*read), L"second");
    EXPECT_EQ(record->SetDescription(empty.data()), S_OK);
    EXPECT_EQ(DescriptionOf(*read), L"");
    EXPECT_EQ(record->SetDescription(nullptr), S_OK);
    EXPECT_EQ(DescriptionOf(*read), L"(null)");
}

TEST(ErrorRecord, HasOneIdentityForBothItsInterfaces) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    const Owned<IErrorInfo> read = Ask<IErrorInfo>(*record, IID_IErrorInfo);
    const Owned<IUnknown> fromRecord = Ask<IUnknown>(*record, IID_IUnknown),
                          fromRead = Ask<IUnknown>(*read, IID_IUnknown);
    EXPECT_EQ(fromRecord.get(), fromRead.get());
    EXPECT_EQ(Ask<ICreateErrorInfo>(*read, IID_ICreateErrorInfo).get(), record.get());
    EXPECT_EQ(Ask<IErrorInfo>(*fromRead, IID_IErrorInfo).get(), read.get());
    EXPECT_EQ(ReferencesOf(*record), 4U);
}

TEST(ErrorRecord, RefusesOtherInterfaces) {
    const Owned<ICreateErrorInfo> record = NewRecord();
    const Owned<IErrorInfo> read = Ask<IErrorInfo>(*record, IID_IErrorInfo);
    for (IUnknown* const face : {static_cast<IUnknown*>(record.get()), static_cast<IUnknown*>(read.get())}) {
        void* answer = face;
        EXPECT_EQ(face->QueryInterface(IID_IDispatch, &answer), E_NOINTERFACE);
        EXPECT_EQ(answer, nullptr);
    }
    EXPECT_EQ(ReferencesOf(*record), 2U);
}

TEST(ErrorRecord, RefusesNullOutputPointers) {
    EXPECT_EQ(CreateErrorInfo(nullptr), E_INVALIDARG);
    const Owned<IErrorInfo> read = RecordOf(L"text");
    EXPECT_EQ(read->GetSource(nullptr), E_INVALIDARG);
    EXPECT_EQ(read->GetDescription(nullptr), E_INVALIDARG);
    EXPECT_EQ(read->GetHelpFile(nullptr), E_INVALIDARG);
    EXPECT_EQ(read->GetHelpContext(nullptr), E_INVALIDARG);
    EXPECT_EQ(read->GetGUID(nullptr), E_INVALIDARG);
}

TEST(ThreadsErrorRecord, IsRemovedWhenItIsRead) {
    const Owned<IErrorInfo> record = RecordOf(L"once");
    EXPECT_EQ(SetErrorInfo(0, record.get()), S_OK);
    IErrorInfo* taken = nullptr;
    EXPECT_EQ(GetErrorInfo(0, &taken), S_OK);
    EXPECT_EQ(taken, record.get());
    taken->Release();
    taken = record.get();
    EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);
    EXPECT_EQ(taken, nullptr);
}

TEST(ThreadsErrorRecord, IsReferencedUntilItIsReplacedOrRemoved) {
    const Owned<IErrorInfo> first = RecordOf(L"first"), second = RecordOf(L"second");
    SetErrorInfo(0, first.get());
    EXPECT_EQ(ReferencesOf(*first), 2U);
    SetErrorInfo(0, second.get());
    EXPECT_EQ(ReferencesOf(*first), 1U);
    EXPECT_EQ(ReferencesOf(*second), 2U);
    SetErrorInfo(0, second.get());
    EXPECT_EQ(ReferencesOf(*second), 2U) << "the same record set twice must be referenced once";
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    EXPECT_EQ(ReferencesOf(*second), 1U);
    EXPECT_EQ(Taken(), nullptr);
}

TEST(ThreadsErrorRecord, RequiresTheReservedNumberZero) {
    const Owned<IErrorInfo> record = RecordOf(L"kept");
    SetErrorInfo(0, record.get());
    IErrorInfo* taken = nullptr;
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(1, &taken), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(0, nullptr), E_INVALIDARG);
    EXPECT_EQ(Taken().get(), record.get());
}

TEST(ThreadsErrorRecord, IsNotVisibleInOtherThreads) {
    const Owned<IErrorInfo> record = RecordOf(L"here");
    SetErrorInfo(0, record.get());
    std::thread([] {
        EXPECT_EQ(Taken(), nullptr);
        SetErrorInfo(0, RecordOf(L"there").get());
        EXPECT_EQ(DescriptionOf(*Taken()), L"there");
    }).join();
    EXPECT_EQ(Taken().get(), record.get());
}

TEST(ThreadsErrorRecord, IsReleasedWhenTheThreadEnds) {
    const Owned<IErrorInfo> record = RecordOf(L"left behind");
    std::thread([&] { SetErrorInfo(0, record.get()); }).join();
    EXPECT_EQ(ReferencesOf(*record), 1U);
}

TEST(ErrorRecord, CanBeUsedByManyThreadsAtOnce) {
    const Owned<IErrorInfo> record = RecordOf(L"shared");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 500; ++round) {
                SetErrorInfo(0, record.get());
                const Owned<IErrorInfo> taken = Taken();
                ASSERT_EQ(DescriptionOf(*taken), L"shared");
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(ReferencesOf(*record), 1U);
}

} // namespace

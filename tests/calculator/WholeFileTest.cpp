#include "interface/ErrorCodes.h"
#include "tests/calculator/MemoryFailures.h"
#include "tests/support/Bstr.h"
#include "tests/support/TemporaryFolder.h"

using namespace qmv40;

/// A value that cannot be read or written, and then no memory for the record that would say so: the code is another
/// one, and load and save speak for themselves.

namespace {

class WholeFile : public PreparedCalculator {
protected:
    /// The records that go with E_OUTOFMEMORY when one allocation of `call` after the other fails.
    static std::vector<ErrorRecord> RecordsOf(const std::function<HRESULT()>& call, HRESULT ownCode) {
        std::vector<ErrorRecord> records;
        ForEveryAllocation(call, [&](HRESULT code) {
            const auto record = TakeErrorRecord();
            EXPECT_TRUE(code == ownCode || code == E_OUTOFMEMORY) << std::hex << "0x" << static_cast<unsigned>(code);
            if (code == E_OUTOFMEMORY && record) records.push_back(*record);
        });
        return records;
    }

    TemporaryFolder folder;
    Bstr nowhere{folder.Path("no such folder") / "head.ini"};
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
};

// One whose own texts found no memory has none of them.
bool HasTexts(const ErrorRecord& record) { return !record.source.empty() && !record.description.empty(); }

TEST_F(WholeFile, NamesItsLoadWhenAnotherCodeComesUp) {
    const auto records =
        RecordsOf([&] { return calculator->LoadHeadGeometryFromFile(nowhere.Address()); }, QMV_E_READ_FROM_FILE);
    bool seen = false;
    for (const ErrorRecord& record : records) {
        if (!HasTexts(record)) continue;
        seen = true;
        EXPECT_EQ(record.source, L"RoundThePole::LoadFromFile");
        EXPECT_EQ(record.description, L"Failed To Load File");
        EXPECT_EQ(record.helpFile, L"");
    }
    EXPECT_TRUE(seen);
}

// The failed save names the load as its source. The text is fixed.
TEST_F(WholeFile, NamesItsLoadAlsoWhenItIsTheSaveThatFails) {
    const auto records =
        RecordsOf([&] { return calculator->SaveHeadGeometryToFile(nowhere.Address()); }, QMV_E_WRITE_TO_FILE);
    bool seen = false;
    for (const ErrorRecord& record : records) {
        if (!HasTexts(record)) continue;
        seen = true;
        EXPECT_EQ(record.source, L"RoundThePole::LoadFromFile");
        EXPECT_EQ(record.description, L"Failed To Save File");
        EXPECT_EQ(record.helpFile, L"");
    }
    EXPECT_TRUE(seen);
}

} // namespace

#include "interface/ErrorCodes.h"
#include "tests/calculator/MemoryFailures.h"
#include "tests/support/Bstr.h"
#include "tests/support/TemporaryFolder.h"

using namespace qmv40;

/// A value cannot be read or written, and there is no memory for its error record. The code is then E_OUTOFMEMORY, and
/// the record names the whole load or save.

namespace {

class WholeFile : public PreparedCalculator {
protected:
    /// The records of all runs of `call` that end with E_OUTOFMEMORY. In each run the next allocation fails.
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

// A record whose texts could not be allocated has no texts.
bool HasTexts(const ErrorRecord& record) { return !record.source.empty() && !record.description.empty(); }

TEST_F(WholeFile, NamesTheLoadWhenMemoryRunsOut) {
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
TEST_F(WholeFile, NamesTheLoadAlsoForAFailedSave) {
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

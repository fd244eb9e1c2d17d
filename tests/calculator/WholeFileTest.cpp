#include "tests/calculator/MemoryFailures.h"
#include "tests/support/Bstr.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

using namespace qmv40;

/// A value cannot be read or written, and there is no memory for its error record. The code is then E_OUTOFMEMORY, and
/// the record names the whole load or save.

namespace {

class WholeFile : public PreparedCalculator {
protected:
    /// Makes the call again and again; in each run the next allocation fails. Checks the records of the runs that end
    /// with E_OUTOFMEMORY. (A record whose texts could not be allocated has no texts.)
    static void ExpectRecords(const std::function<HRESULT()>& call, HRESULT ownCode, const wchar_t* description) {
        bool seen = false;
        ForEveryAllocation(call, [&](HRESULT code) {
            const Raised raised{code, TakeErrorRecord()};
            EXPECT_TRUE(code == ownCode || code == E_OUTOFMEMORY) << std::hex << "0x" << static_cast<unsigned>(code);
            if (code != E_OUTOFMEMORY || !raised.record) return;
            if (raised.record->source.empty() || raised.record->description.empty()) return;
            seen = true;
            ExpectFailure(raised, {E_OUTOFMEMORY, L"RoundThePole::LoadFromFile", description});
        });
        EXPECT_TRUE(seen);
    }

    TemporaryFolder folder;
    Bstr nowhere{folder.Path("no such folder") / "head.ini"};
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
};

// A save that fails with E_OUTOFMEMORY names the load as its source. The text is fixed.
TEST_F(WholeFile, IsNamedWhenMemoryRunsOut) {
    ExpectRecords([&] { return calculator->LoadHeadGeometryFromFile(nowhere.Address()); }, QMV_E_READ_FROM_FILE,
                  L"Failed To Load File");
    ExpectRecords([&] { return calculator->SaveHeadGeometryToFile(nowhere.Address()); }, QMV_E_WRITE_TO_FILE,
                  L"Failed To Save File");
}

} // namespace

#include "tests/neighbours/HostSnapshot.h"
#include "tests/neighbours/Neighbour.h"
#include "tests/support/Calculator.h"

#include <cerrno>

/// The settings of the process are the same before and after calls of all methods.

namespace {

class Host : public Neighbour {};

TEST_F(Host, IsTheSameAfterEveryCall) {
    for (int round = 0; round < 3; ++round) {
        const HostSnapshot before;
        const Results actual = job.Do();
        const HostSnapshot after;
        EXPECT_EQ(after.Lines(), before.Lines());
        ExpectSame(actual, expected);
    }
}

TEST_F(Host, KeepsItsErrorNumber) {
    const auto calculator = CreateCalculator();
    Bstr nowhere(folder.Path("none") / "head.ini");
    Bstr name(folder.Path("head.ini"));
    constexpr int theHosts = 4711;
    errno = theHosts;
    calculator->LoadHeadGeometryFromFile(nowhere.Address());
    const int afterLoading = errno;
    calculator->SaveHeadGeometryToFile(nowhere.Address());
    const int afterSavingNowhere = errno;
    calculator->SaveHeadGeometryToFile(name.Address());
    const int afterSaving = errno;
    EXPECT_EQ(afterLoading, theHosts);
    EXPECT_EQ(afterSavingNowhere, theHosts);
    EXPECT_EQ(afterSaving, theHosts);
}

} // namespace

#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"
#include "tests/support/SimulatedHead.h"

#include <iterator>

/// The operations of the head for its file. (tests/persistence has the entries of the file and their order.)

namespace {

class GeometryFile : public HeadTest {
protected:
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path("head.ini");
    RoundThePole head;
};

TEST_F(GeometryFile, KeepsTheMeasuredPointsOfAnEarlierComputation) {
    const SimulatedHead simulated;
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    SavedHead{.headCentre = {1.0, 2.0, 3.5}}.LoadInto(head);
    EXPECT_EQ(head.AAxisPoints().GetSize(), 7);
    EXPECT_EQ(head.BAxisPoints().GetSize(), 7);
    EXPECT_EQ(head.AAxisCaptureBPosition(), 45.0);
}

TEST_F(GeometryFile, ThatDoesNotExistMakesTheLoadFailWithoutAChange) {
    SavedHead{.headCentre = {1.0, 2.0, 3.0}, .safePosition = {4.0, 5.0, 6.0}, .rotation = 30.0}.LoadInto(head);
    const Triple axis = TripleOf(head.AAxis());
    Bstr name(path);
    ExpectFailure(RaisedBy([&] { head.LoadFromFile(name.Address()); }), failures::notRead);
    EXPECT_EQ(TripleOf(head.HeadCentre()), (Triple{1.0, 2.0, 3.0}));
    EXPECT_EQ(TripleOf(head.AAxis()), axis);
}

TEST_F(GeometryFile, ReadsAndWritesSingleNumbers) {
    const std::wstring name = path.wstring();
    head.WriteDoubleToIniFile(L"SECTION", L"Key", -6.95, name.c_str());
    EXPECT_EQ(head.ReadDoubleFromIniFile(L"SECTION", L"Key", name.c_str()), -6.95);
    std::ifstream file(path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "[SECTION]\r\nKey=-6.950000000e+00\r\n");
    ExpectFailure(RaisedBy([&] { head.ReadDoubleFromIniFile(L"SECTION", L"K", name.c_str()); }), failures::notRead);
}

} // namespace

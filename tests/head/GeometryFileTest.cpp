#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"
#include "tests/support/SimulatedHead.h"

#include <algorithm>
#include <cmath>

namespace {

class GeometryFile : public HeadTest {
protected:
    void Write(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }
    Raised Loading(const std::filesystem::path& from) {
        Bstr name(from);
        return RaisedBy([&] { head.LoadFromFile(name.Address()); });
    }
    Raised Loading() { return Loading(path); }
    Raised Saving(const std::filesystem::path& to) const {
        Bstr name(to);
        return RaisedBy([&] { head.SaveToFile(name.Address()); });
    }
    /// The file's lines without line ends. Empty lines are left out.
    std::vector<std::string> Lines() const {
        std::ifstream stream(path, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) {
            while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
            if (!line.empty()) lines.push_back(line);
        }
        return lines;
    }

    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path("head.ini");
    RoundThePole head;
};

testing::AssertionResult CouldNotRead(const Raised& raised) {
    return FailedWith(raised, QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile", L"Failed To Read from File",
                      L"");
}

TEST_F(GeometryFile, HoldsSevenNumbersInThreeSectionsInTheirOrder) {
    SavedHead{.headCentre = {-6.95, 1234567890.125, 0.1}, .safePosition = {0.0, -1e-7, 5.0}, .rotation = -180.0}
        .LoadInto(head);
    ASSERT_EQ(Saving(path).code, S_OK);
    const std::vector<std::string> expected{"[HEADCENTRE]",       "X=-6.950000000e+00",
                                            "Y=1.234567890e+09",  "Z=1.000000000e-01",
                                            "[SAFEPOSITION]",     "X=0.000000000e+00",
                                            "Y=-1.000000000e-07", "Z=3.510000000e+01",
                                            "[AlignmentOffset]",  "RequiredRotationAroundZ=-1.800000000e+02"};
    EXPECT_EQ(Lines(), expected);
}

TEST_F(GeometryFile, KeepsTenDigitsOfAMeasuredHead) {
    const SimulatedHead simulated{.pole = {312.123456789, -48.25, -610.0}, .mountingAngle = 12.3456789};
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    ASSERT_EQ(Saving(path).code, S_OK);
    RoundThePole loaded;
    Bstr name(path);
    loaded.LoadFromFile(name.Address());
    const auto halfOfTheTenthDigit = [](double value) {
        return 0.5e-9 * std::pow(10.0, std::floor(std::log10(std::abs(value))));
    };
    for (const int i : {0, 1, 2})
        EXPECT_NEAR(loaded.HeadCentre()[i], head.HeadCentre()[i], 1.001 * halfOfTheTenthDigit(head.HeadCentre()[i]));
    EXPECT_NEAR(loaded.RequiredRotationAroundZ(), head.RequiredRotationAroundZ(),
                1.001 * halfOfTheTenthDigit(head.RequiredRotationAroundZ()));
}

TEST_F(GeometryFile, KeepsItsSafeXAndYButNeverItsSafeZ) {
    // The saved Z must be in the file, but it is not used: the safe height is computed from the head centre.
    SavedHead{.headCentre = {1.0, 2.0, 3.5}, .safePosition = {-7.25, 8.5, 999.0}}.LoadInto(head);
    EXPECT_EQ(head.SafePositionX(), -7.25);
    EXPECT_EQ(head.SafePositionY(), 8.5);
    EXPECT_EQ(head.SafePositionZ(), 38.5);
}

TEST_F(GeometryFile, KeepsTheMeasuredPointsOfAnEarlierComputation) {
    const SimulatedHead simulated;
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    SavedHead{.headCentre = {1.0, 2.0, 3.5}}.LoadInto(head);
    EXPECT_EQ(head.AAxisPoints().GetSize(), 7);
    EXPECT_EQ(head.BAxisPoints().GetSize(), 7);
    EXPECT_EQ(head.AAxisCaptureBPosition(), 45.0);
}

TEST_F(GeometryFile, KeepsItsOtherContentInASave) {
    Write("; mine\r\n[Other]\r\nKey=value\r\n[HEADCENTRE]\r\nNote=keep\r\nX=5\r\n");
    ASSERT_EQ(Saving(path).code, S_OK);
    const std::vector<std::string> lines = Lines();
    for (const char* kept : {"; mine", "[Other]", "Key=value", "Note=keep", "X=0.000000000e+00"})
        EXPECT_NE(std::find(lines.begin(), lines.end(), kept), lines.end()) << kept;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "[HEADCENTRE]"), 1);
    EXPECT_EQ(std::find(lines.begin(), lines.end(), "X=5"), lines.end());
    EXPECT_EQ(Loading().code, S_OK);
}

TEST_F(GeometryFile, ThatDoesNotExistMakesTheLoadFailWithoutAChange) {
    SavedHead{.headCentre = {1.0, 2.0, 3.0}, .safePosition = {4.0, 5.0, 6.0}, .rotation = 30.0}.LoadInto(head);
    const Triple axis = TripleOf(head.AAxis());
    EXPECT_TRUE(CouldNotRead(Loading(folder.Path("nothing.ini"))));
    EXPECT_EQ(TripleOf(head.HeadCentre()), (Triple{1.0, 2.0, 3.0}));
    EXPECT_EQ(TripleOf(head.AAxis()), axis);
}

TEST_F(GeometryFile, ThatCannotBeWrittenMakesTheSaveFail) {
    const Raised raised = Saving(folder.Path("no such folder") / "head.ini");
    EXPECT_TRUE(FailedWith(raised, QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile",
                           L"Failed To Write To File", L""));
}

TEST_F(GeometryFile, ReadsAndWritesSingleNumbers) {
    head.WriteDoubleToIniFile(L"SECTION", L"Key", -6.95, path.wstring().c_str());
    EXPECT_EQ(head.ReadDoubleFromIniFile(L"SECTION", L"Key", path.wstring().c_str()), -6.95);
    EXPECT_EQ(Lines(), (std::vector<std::string>{"[SECTION]", "Key=-6.950000000e+00"}));
    EXPECT_TRUE(CouldNotRead(RaisedBy([&] { head.ReadDoubleFromIniFile(L"SECTION", L"K", path.wstring().c_str()); })));
}

} // namespace

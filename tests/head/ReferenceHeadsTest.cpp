#include "tests/head/HeadChecks.h"
#include "tests/head/ReferenceCase.h"
#include "tests/head/SavedHead.h"

#include <cmath>
#include <cstdlib>

namespace {

/// The allowed effect of rounding in the fits. Lengths: the error that the tests of the circle fit always allow, 1/100
/// of the file's last digit for a coordinate of some hundreds. Degrees: far more than the error of a plane through
/// points that are 100 apart and have roundings of 1e-13.
constexpr double lengthNoise = 1e-9;
constexpr double angleNoise = 1e-10;

/// Whether `text` is the correct rounding to ten digits of a number within `noise` of `value`. There is exactly one
/// such text, unless `value` is within `noise` of the middle between two texts.
testing::AssertionResult RoundsTo(const std::string& text, double value, double noise) {
    if (text.size() < 15 || text.find('e') == std::string::npos) return testing::AssertionFailure() << text;
    const double written = std::strtod(text.c_str(), nullptr);
    const double halfOfLastDigit = 0.5e-9 * std::pow(10.0, std::atoi(text.c_str() + text.find('e') + 1));
    if (std::abs(written - value) <= halfOfLastDigit + noise) return testing::AssertionSuccess();
    return testing::AssertionFailure() << text << " is not " << value << " to ten digits";
}

class ReferenceHeads : public ReferenceHeadTest {
protected:
    void SetUp() override {
        ReferenceHeadTest::SetUp();
        ASSERT_EQ(Computing(head, Case().aAxisPoints, Case().bAxisPoints).code, S_OK);
    }

    RoundThePole head;
};

TEST_P(ReferenceHeads, HaveTheHeadCentreOfTheReference) {
    for (const int i : {0, 1, 2})
        EXPECT_NEAR(head.HeadCentre()[i], Case().headCentre[static_cast<std::size_t>(i)], LengthAgreement());
    EXPECT_NEAR(head.SafePositionZ(), Case().safePositionZ, LengthAgreement());
    EXPECT_EQ(head.SafePositionZ(), head.HeadCentre()[2] + 35.0);
}

TEST_P(ReferenceHeads, HaveTheRotationOfTheReference) {
    EXPECT_NEAR(head.RequiredRotationAroundZ(), Case().requiredRotationAroundZ, angleAgreement);
    CMaPointArray points = head.AAxisPoints();
    EXPECT_EQ(head.DetermineQuadrant(points), Case().quadrant);
}

TEST_P(ReferenceHeads, AreSavedWithTheDigitsOfTheReference) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path("head.ini");
    Bstr name(path);
    head.SaveToFile(name.Address());
    const std::vector<ReferenceHead::FileEntry> entries = EntriesOf(path);
    ASSERT_EQ(entries.size(), Case().file.size());
    // The reference has more digits than the file.
    const double values[] = {Case().headCentre[0], Case().headCentre[1],          Case().headCentre[2], 0.0, 0.0,
                             Case().safePositionZ, Case().requiredRotationAroundZ};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        SCOPED_TRACE(Case().file[i].section + " " + Case().file[i].key);
        EXPECT_EQ(entries[i].section, Case().file[i].section);
        EXPECT_EQ(entries[i].key, Case().file[i].key);
        if (entries[i].text == Case().file[i].text) continue;
        EXPECT_TRUE(RoundsTo(entries[i].text, values[i], i == 6 ? angleNoise : lengthNoise))
            << "reference " << Case().file[i].text;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ReferenceHeads, testing::ValuesIn(LoadReferenceHeads()), TestNameOf);

} // namespace

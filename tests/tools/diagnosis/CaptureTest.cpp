#include "tools/diagnosis/Capture.h"

#include "tests/tools/cli/ToolRun.h"
#include "tools/text/Failures.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

constexpr const char* header = "APosition,BPosition,XPosition,YPosition,ZPosition\n";

/// The one point that every accepted spelling below stands for.
void ExpectTheOnePoint(const std::vector<HeadAlignmentDataItem>& items, const char* why) {
    ASSERT_EQ(1u, items.size()) << why;
    EXPECT_EQ(45.0, items[0].APosition) << why;
    EXPECT_EQ(-90.0, items[0].BPosition) << why;
    EXPECT_EQ(1.5, items[0].XPosition) << why;
    EXPECT_EQ(-2.25, items[0].YPosition) << why;
    EXPECT_EQ(1000.0, items[0].ZPosition) << why;
}

TEST(CaptureFile, IsReadInEverySpellingThatMeansTheSame) {
    const struct {
        const char* content;
        const char* why;
    } cases[] = {
        {"APosition,BPosition,XPosition,YPosition,ZPosition\n45,-90,1.5,-2.25,1000\n", "as documented"},
        {"ZPosition,XPosition,APosition,YPosition,BPosition\n1000,1.5,45,-2.25,-90\n", "columns in any order"},
        {"aposition,BPOSITION,xPosition,YpositioN,zposition\n45,-90,1.5,-2.25,1000\n", "in any letter case"},
        {"APosition,BPosition,XPosition,YPosition,ZPosition\n45,-90,1.5,-2.25,1000", "no newline at the end"},
        {"APosition,BPosition,XPosition,YPosition,ZPosition\r\n45,-90,1.5,-2.25,1000\r\n", "CRLF"},
        {"\xEF\xBB\xBF"
         "APosition,BPosition,XPosition,YPosition,ZPosition\n45,-90,1.5,-2.25,1000\n",
         "byte-order mark"},
        {"# a\n\n  # b\nAPosition,BPosition,XPosition,YPosition,ZPosition\n \t\n# c, d\n45,-90,1.5,-2.25,1000\n\n",
         "comments and blank lines anywhere"},
        {" APosition ,\tBPosition, XPosition,YPosition,ZPosition \n 45 , -90,\t1.5,-2.25 ,1000\t\n",
         "blanks around fields"},
        {"\"APosition\",\"BPosition\",XPosition,YPosition,ZPosition\n\"45\", \"-90\" ,1.5,\"-2.25\",\"1000\"\n",
         "quoted fields"},
        {"APosition,BPosition,XPosition,YPosition,ZPosition\n45.0,-9e1,+1.5,-225e-2,1.0E3\n", "spellings of numbers"},
        {"Time,APosition,BPosition,XPosition,YPosition,ZPosition,Remark\n"
         "09:30,45,-90,1.5,-2.25,1000,\"said \"\"good\"\", kept\"\n",
         "columns that nobody asked for are not looked at"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        try {
            ExpectTheOnePoint(diagnosis::ReadCapture(folder.Write("capture.csv", each.content)), each.why);
        } catch (const text::InputError& error) {
            ADD_FAILURE() << each.why << ": " << error.reason;
        }
    }
}

TEST(CaptureFile, KeepsThePointsInTheirOrder) {
    const TemporaryFolder folder;
    const auto items = diagnosis::ReadCapture(
        folder.Write("capture.csv", std::string(header) + "0,0,1,1,1\n30,0,2,2,2\n15,0,3,3,3\n"));
    ASSERT_EQ(3u, items.size());
    EXPECT_EQ(0.0, items[0].APosition);
    EXPECT_EQ(30.0, items[1].APosition);
    EXPECT_EQ(15.0, items[2].APosition);
}

TEST(CaptureFile, IsRefusedWithTheLineAndTheReason) {
    const std::string h = header;
    const struct {
        std::string content;
        std::size_t line;
        std::string reason;
    } cases[] = {
        {"", 1, "there is no header"},
        {"# only a comment\n\n", 1, "there is no header"},
        {"0,0,1,2,3\n", 1, "the header has no column APosition"},
        {"APosition,BPosition,XPosition,YPosition\n", 1, "the header has no column ZPosition"},
        {"# made by hand\nAPosition,BPosition,X,YPosition,ZPosition\n", 2, "the header has no column XPosition"},
        {"APosition;BPosition;XPosition;YPosition;ZPosition\n", 1,
         "the header has no column APosition (fields are to be separated by commas)"},
        {"APosition,BPosition,XPosition,YPosition,ZPosition,xposition\n", 1, "the header has two columns XPosition"},
        {h + "0,0,1,2\n", 2, "there are 4 fields where the header has 5"},
        {h + "0,0,1,2,3\n\n# fine so far\n0,0,1,2,3,4\n", 5, "there are 6 fields where the header has 5"},
        {h + "0,0,1,2,3,\n", 2, "there are 6 fields where the header has 5"},
        {h + "0,0,1,2,3\r\n0,0,1,two,3\r\n", 3, "YPosition 'two' is not a number"},
        {h + "0,0,1.5mm,2,3\n", 2, "XPosition '1.5mm' goes on after the number"},
        {h + "0,0,\"1,5\",2,3\n", 2, "XPosition '1,5' goes on after the number"},
        {h + "0,0,,2,3\n", 2, "XPosition '' is empty"},
        {h + "0,0,1,2,nan\n", 2, "ZPosition 'nan' is not a finite number"},
        {h + "0,0,1,2,-inf\n", 2, "ZPosition '-inf' is not a finite number"},
        {h + "0,0,1,2,1e400\n", 2, "ZPosition '1e400' is too large or too small a number"},
        {h + "0,0,\"1,2,3\n", 2, "the closing quote of a field is missing"},
        {h + "0,0,\"1\"5,2,3\n", 2, "something follows the closing quote of a field"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        const std::string fileName = folder.Write("capture.csv", each.content);
        try {
            diagnosis::ReadCapture(fileName);
            ADD_FAILURE() << "accepted: " << each.content;
        } catch (const text::InputError& error) {
            EXPECT_EQ(fileName, error.file);
            EXPECT_EQ(each.line, error.line) << each.content;
            EXPECT_EQ(each.reason, error.reason) << each.content;
        }
    }
}

TEST(CaptureFile, IsRefusedAsAWholeWhenItIsNoText) {
    const TemporaryFolder folder;
    const struct {
        std::string fileName;
        const char* reason;
    } cases[] = {
        {folder.Name("nowhere.csv"), "no such file"},
        {folder.Name("."), "is a folder"},
        {folder.Write("wide.csv", "\xFF\xFE"
                                  "A"),
         "is UTF-16 text: save it as UTF-8"},
    };
    for (const auto& each : cases) {
        try {
            diagnosis::ReadCapture(each.fileName);
            ADD_FAILURE() << "accepted: " << each.fileName;
        } catch (const text::InputError& error) {
            EXPECT_EQ(each.reason, error.reason) << each.fileName;
            EXPECT_FALSE(error.line.has_value()) << each.fileName;
        }
    }
}

TEST(PointFile, NeedsTheThreeCoordinatesAlone) {
    const TemporaryFolder folder;
    const auto points = diagnosis::ReadPoints(folder.Write("points.csv", "zposition,yposition,xposition\n3,2,1\n"));
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(1.0, points[0].XPosition);
    EXPECT_EQ(2.0, points[0].YPosition);
    EXPECT_EQ(3.0, points[0].ZPosition);
}

TEST(PointFile, MayBeACaptureWhoseAnglesAreNotLookedAt) {
    const TemporaryFolder folder;
    const auto points = diagnosis::ReadPoints(folder.Write("capture.csv", std::string(header) + "?,?,1,2,3\n"));
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(1.0, points[0].XPosition);
}

} // namespace

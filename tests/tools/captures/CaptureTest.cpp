#include "tools/captures/Capture.h"

#include "tests/tools/cli/ToolRun.h"
#include "tools/text/Failures.h"

#include <bit>
#include <gtest/gtest.h>
#include <optional>

using namespace qmv40;

namespace {

constexpr const char* header = "APosition,BPosition,XPosition,YPosition,ZPosition\n";

std::vector<HeadAlignmentDataItem> ReadItems(const std::string& fileName) {
    return captures::ReadCapture(fileName, text::LengthUnit::Millimetre).items;
}

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
         "other columns are ignored"},
        {"A,B,X,Y,Z\n45,-90,1.5,-2.25,1000\n", "short names"},
        {"z;y;x;b;a\n1000;-2.25;1.5;-90;45\n", "short names in any order and letter case"},
        {"X,APosition,BPosition,XPosition,YPosition,ZPosition\n7,45,-90,1.5,-2.25,1000\n", "a long name comes first"},
        {"A;B;X;Y;Z\n45;-90;1.5;-2.25;1000\n", "semicolons"},
        {"A;B;X;Y;Z\n45;-90;1,5;-2,25;1000\n", "semicolons and decimal commas"},
        {"A;B;X;Y;Z\n45,0;-90,00;1,500;-225e-2;+1,0E3\n", "decimal commas in every spelling of a number"},
        {"A\tB\tX\tY\tZ\n45\t-90\t1.5\t-2.25\t1000\n", "tabulators"},
        {"A\tB\tX\tY\tZ\n45\t-90\t1,5\t-2,25\t1000\n", "tabulators and decimal commas"},
        {"\"A\"\t\"B\"\tX\tY\tZ\n 45 \t \"-90\" \t1.5\t-2.25\t1000\n", "blanks and quotes beside tabulators"},
        {"\"A\";\"B\";\"X\";\"Y\";\"Z\"\n\"45\";\"-90\";\"1,5\";\"-2,25\";\"1000\"\n", "quoted fields, semicolons"},
        {"A;B;X;Y;Z;Remark\n45;-90;1,5;-2,25;1000;one, two. three\n", "commas and points in another column"},
        {"sep=;\r\nA;B;X;Y;Z\r\n45;-90;1,5;-2,25;1000\r\n", "a line sep= gives the separator"},
        {"SEP=,\nA,B,X,Y,Z\n45,-90,1.5,-2.25,1000\n", "a line sep= in capitals"},
        {"# by hand\nsep=\t\nA\tB\tX\tY\tZ\n45\t-90\t1.5\t-2.25\t1000\n", "a line sep= gives a tabulator"},
        {"A,B,X,Y,Z\r45,-90,1.5,-2.25,1000\r", "CR alone ends a line"},
        {"A [deg],B (\xC2\xB0),X [mm],Y (MM),Z/mm\n45,-90,1.5,-2.25,1000\n", "units"},
        {"APosition [deg],BPosition,XPosition [ millimetres ],YPosition (mm),ZPosition/mm\n45,-90,1.5,-2.25,1000\n",
         "units behind long names"},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        try {
            ExpectTheOnePoint(ReadItems(folder.Write("capture.csv", each.content)), each.why);
        } catch (const text::InputError& error) {
            ADD_FAILURE() << each.why << ": " << error.reason;
        }
    }
}

std::string InUtf16(std::string_view ascii, std::endian order) {
    std::string bytes = order == std::endian::little ? "\xFF\xFE" : "\xFE\xFF";
    for (const char c : ascii) bytes += order == std::endian::little ? std::string{c, '\0'} : std::string{'\0', c};
    return bytes;
}

TEST(CaptureFile, MayBeUtf16WithAByteOrderMark) {
    const TemporaryFolder folder;
    for (const std::endian order : {std::endian::little, std::endian::big}) {
        const std::string content = InUtf16("A\tB\tX\tY\tZ\r\n45\t-90\t1,5\t-2,25\t1000\r\n", order);
        ExpectTheOnePoint(ReadItems(folder.Write("capture.csv", content)), "UTF-16");
    }
}

TEST(CaptureFile, IsReadInTheGivenUnitUnlessItsHeaderContradicts) {
    using enum text::LengthUnit;
    const struct {
        const char* header;
        text::LengthUnit unit;
        std::optional<double> x; ///< what a 2 means in millimetres; empty: refused
    } cases[] = {
        {"A,B,X,Y,Z\n", Millimetre, 2.0},
        {"A,B,X,Y,Z\n", Inch, 50.8},
        {"A [deg],B [deg],X,Y,Z\n", Inch, 50.8},
        {"A,B,X [mm],Y [mm],Z [mm]\n", Millimetre, 2.0},
        {"A,B,X [mm],Y [mm],Z [mm]\n", Inch, std::nullopt},
        {"A,B,X (in),Y (inch),Z (Inches)\n", Inch, 50.8},
        {"A,B,X (in),Y (inch),Z (Inches)\n", Millimetre, std::nullopt},
        {"A,B,X/in,Y/in,Z/in\n", Inch, 50.8},
    };
    const TemporaryFolder folder;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.header + (each.unit == Inch ? std::string("in inches") : "in millimetres"));
        const std::string file = folder.Write("capture.csv", std::string(each.header) + "45,-90,2,2,2\n");
        if (!each.x) {
            EXPECT_THROW(captures::ReadCapture(file, each.unit), text::InputError);
            continue;
        }
        const auto items = captures::ReadCapture(file, each.unit).items;
        ASSERT_EQ(1u, items.size());
        EXPECT_EQ(45.0, items[0].APosition);
        EXPECT_EQ(-90.0, items[0].BPosition);
        EXPECT_EQ(*each.x, items[0].XPosition);
        EXPECT_EQ(*each.x, items[0].YPosition);
        EXPECT_EQ(*each.x, items[0].ZPosition);
    }
}

TEST(CaptureFile, KeepsThePointsInTheirOrder) {
    const TemporaryFolder folder;
    const auto items =
        ReadItems(folder.Write("capture.csv", std::string(header) + "0,0,1,1,1\n30,0,2,2,2\n15,0,3,3,3\n"));
    ASSERT_EQ(3u, items.size());
    EXPECT_EQ(0.0, items[0].APosition);
    EXPECT_EQ(30.0, items[1].APosition);
    EXPECT_EQ(15.0, items[2].APosition);
}

TEST(CaptureFile, IsRefusedWithTheLineAndTheReason) {
    const std::string h = header;
    const std::string toWrite = ": write the header APosition,BPosition,XPosition,YPosition,ZPosition";
    const auto otherUnit = [](const std::string& column) {
        return "column " + column + " has another unit than the lengths before it: give all of them the same unit";
    };
    const struct {
        std::string content;
        std::size_t line;
        std::string reason;
    } cases[] = {
        {"", 1, "there is no header"},
        {"# only a comment\n\n", 1, "there is no header"},
        {"0,0,1,2,3\n", 1, "the header has no column APosition" + toWrite},
        {"APosition,BPosition,XPosition,YPosition\n", 1, "the header has no column ZPosition" + toWrite},
        {"# made by hand\nAPosition,BPosition,X,YPosition,ZPosition\n", 2,
         "the header has no column XPosition" + toWrite},
        {"A,B,X,Y\n", 1, "the header has no column Z" + toWrite},
        {"A,B;X,Y,Z\n", 1, "the header has no column B" + toWrite},
        {"\n# one\n45;-90;1,5;2,5;3,5\n", 3, "the header has no column APosition" + toWrite},
        {"sep=,\nA;B;X;Y;Z\n", 2, "the header has no column APosition" + toWrite},
        {"sep=|\nA|B|X|Y|Z\n", 1, "the header has no column APosition" + toWrite},
        {"sep=;\n", 1, "there is no header"},
        {"A|B|X|Y|Z\n0|0|1|2|3\n", 1, "the header has no column APosition" + toWrite},
        {"A B X Y Z\n0 0 1 2 3\n", 1, "the header has no column APosition" + toWrite},
        {"A,B,X,x,Y,Z\n", 1, "the header has two columns X"},
        {"A,B,X [mm],Y [mm],Z [cm]\n", 1, "column Z is in 'cm': lengths are read in mm or in"},
        {"A [rad],B,X,Y,Z\n", 1, "column A is in 'rad': angles are read in deg"},
        {"A [mm],B,X,Y,Z\n", 1, "column A is in 'mm': angles are read in deg"},
        {"A,B,X [mm],Y [in],Z [mm]\n", 1, otherUnit("Y")},
        {"A,B,X [mm],Y [mm],Z\n", 1, otherUnit("Z")},
        {"A,B,X,Y,Z [mm]\n", 1, otherUnit("Z")},
        {"APosition,BPosition,XPosition,YPosition,ZPosition,xposition\n", 1, "the header has two columns XPosition"},
        {h + "0,0,1,2\n", 2, "there are 4 fields where the header has 5"},
        {h + "0,0,1,2,3\n\n# fine so far\n0,0,1,2,3,4\n", 5, "there are 6 fields where the header has 5"},
        {h + "0,0,1,2,3,\n", 2, "there are 6 fields where the header has 5"},
        {h + "0,0,1,2,3\r\n0,0,1,two,3\r\n", 3, "YPosition 'two' is not a number"},
        {h + "0,0,1.5mm,2,3\n", 2, "XPosition '1.5mm' goes on after the number"},
        {h + "0,0,\"1,5\",2,3\n", 2,
         "XPosition '1,5' goes on after the number: the decimal mark is a point where commas separate the fields"},
        {h + "0,0,1,5,2,5,3,5\n", 2,
         "there are 8 fields where the header has 5: numbers with decimal commas need "
         "semicolons between the columns"},
        {"A;B;X;Y;Z\n0;0;1,5;2;3\n0;0;1,5;2.5;3\n", 3,
         "Y '2.5' has '.' as its decimal mark, and line 2 ',': use one in the whole file"},
        {"A\tB\tX\tY\tZ\n0\t0\t1.5\t2\t3\n0\t0\t1\t2,5\t3\n", 3,
         "Y '2,5' has ',' as its decimal mark, and line 2 '.': use one in the whole file"},
        {"A;B;X;Y;Z\n0;0;1,234.5;2;3\n", 2, "X '1,234.5' goes on after the number"},
        {"A;B;X;Y;Z\n0;0;1.234,5;2;3\n", 2, "X '1.234,5' goes on after the number"},
        {"A;B;X;Y;Z\n0;0;1,234,567;2;3\n", 2, "X '1,234,567' goes on after the number"},
        {"A;B;X;Y;Z\n0;0;1,2,3\n", 2, "there are 3 fields where the header has 5"},
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
            ReadItems(fileName);
            ADD_FAILURE() << "accepted: " << each.content;
        } catch (const text::InputError& error) {
            EXPECT_EQ(fileName, error.file);
            EXPECT_EQ(each.line, error.line) << each.content;
            EXPECT_EQ(each.reason, error.reason) << each.content;
        }
    }
}

TEST(CaptureFile, IsRefusedAsAWholeWhenItCannotBeRead) {
    const TemporaryFolder folder;
    const struct {
        std::string fileName;
        const char* reason;
    } cases[] = {
        {folder.Name("nowhere.csv"), "no such file"},
        {folder.Name("."), "is a folder"},
    };
    for (const auto& each : cases) {
        try {
            ReadItems(each.fileName);
            ADD_FAILURE() << "accepted: " << each.fileName;
        } catch (const text::InputError& error) {
            EXPECT_EQ(each.reason, error.reason) << each.fileName;
            EXPECT_FALSE(error.line.has_value()) << each.fileName;
        }
    }
}

TEST(PointFile, NeedsOnlyTheThreeCoordinates) {
    const TemporaryFolder folder;
    const auto points = captures::ReadPoints(folder.Write("points.csv", "zposition,yposition,xposition\n3,2,1\n"),
                                             text::LengthUnit::Millimetre);
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(1.0, points[0].x);
    EXPECT_EQ(2.0, points[0].y);
    EXPECT_EQ(3.0, points[0].z);
}

TEST(CaptureFile, IsRefusedInAnotherUnitThanItsHeaderGives) {
    const TemporaryFolder folder;
    EXPECT_THROW(
        captures::ReadPoints(folder.Write("points.csv", "X [in],Y [in],Z [in]\n"), text::LengthUnit::Millimetre),
        text::InputError);
    const std::string capture = folder.Write("capture.csv", "A,B,X [in],Y [in],Z [in]\n0,0,1,2,3\n");
    const ToolRun run = RunQmv40({"geometry", "--a-axis", capture, "--b-axis", capture});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ(capture +
                  ": the header gives the coordinates in inches, and they are taken as millimetres: give --units in\n",
              run.err);
}

TEST(PointFile, IsReadInTheDialectsOfCaptures) {
    const TemporaryFolder folder;
    const auto points = captures::ReadPoints(folder.Write("points.csv", "X [mm];Y [mm];Z [mm]\n1,5;2;3\n"),
                                             text::LengthUnit::Millimetre);
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(1.5, points[0].x);
}

TEST(PointFile, InInchesBecomesMillimetres) {
    const TemporaryFolder folder;
    const auto points = captures::ReadPoints(folder.Write("points.csv", "X,Y,Z\n1,0.5,-2\n"), text::LengthUnit::Inch);
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(25.4, points[0].x);
    EXPECT_EQ(12.7, points[0].y);
    EXPECT_EQ(-50.8, points[0].z);
}

TEST(PointFile, MayBeACaptureAndIgnoresItsAngles) {
    const TemporaryFolder folder;
    const auto points = captures::ReadPoints(folder.Write("capture.csv", std::string(header) + "?,?,1,2,3\n"),
                                             text::LengthUnit::Millimetre);
    ASSERT_EQ(1u, points.size());
    EXPECT_EQ(1.0, points[0].x);
}

} // namespace

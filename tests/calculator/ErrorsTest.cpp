#include "tests/support/Bstr.h"
#include "tests/support/Failures.h"
#include "tests/support/PreparedCalculator.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <fstream>

/// The code and the error record after refused positions, moves, sets of points and geometry files. (The tests of the
/// head's alignment data refuse many more sets of points.)

namespace {

using namespace failures;
using Points = std::vector<HeadAlignmentDataItem>;

class Errors : public PreparedCalculator {
protected:
    static Raised Entering(AlignmentArray aAxisPoints, AlignmentArray bAxisPoints) {
        const auto calculator = CreateCalculator();
        return ReturnedBy([&] { return calculator->EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()); });
    }
    static Raised Entering(const Points& aSet, const Points& bSet) {
        return Entering(AlignmentArray(aSet), AlignmentArray(bSet));
    }
    static Points With(Points points, std::size_t index, double HeadAlignmentDataItem::*field, double value) {
        points.at(index).*field = value;
        return points;
    }
    static Points OnOneLine(Points points) {
        double along = 0.0;
        for (auto& point : points) point = {point.APosition, point.BPosition, along += 1.0, 2.0, 3.0};
        return points;
    }
    Raised Loading(const std::string& content) const {
        const auto path = folder.Path("head.ini");
        std::ofstream(path, std::ios::binary) << content;
        const auto calculator = CreateCalculator();
        return ReturnedBy([&] { return calculator->LoadHeadGeometryFromFile(Bstr(path).Address()); });
    }
    static Raised Setting(double a, double b) {
        const auto calculator = CreateCalculator();
        return ReturnedBy([&] { return calculator->SetCurrentHeadPosition(a, b); });
    }

    TemporaryFolder folder;
};

TEST_F(Errors, NameOperationAndReasonForPositionsAndMoves) {
    const auto fresh = CreateCalculator();
    const auto unplaced = WithGeometry();
    const auto ready = At(0.0, 0.0);
    double a = 0.0;
    double b = 0.0;
    XYZData start{};
    // A start position is planned: its record names CalculateMove.
    ExpectFailures({
        {"getting a position that was never set",
         [&] { return ReturnedBy([&] { return fresh->GetCurrentHeadPosition(&a, &b); }); }, noPosition},
        {"planning without a geometry", [&] { return Plan(*fresh.Get(), 0.0, 0.0); }, noGeometry},
        {"planning without a position", [&] { return Plan(*unplaced.Get(), 0.0, 0.0); }, noPositionToPlanFrom},
        {"start without a geometry", [&] { return ReturnedBy([&] { return fresh->GetStartPosition(&start); }); },
         noGeometry},
        {"start without a position", [&] { return ReturnedBy([&] { return unplaced->GetStartPosition(&start); }); },
         noPositionToPlanFrom},
        {"planning to an A out of range", [&] { return Plan(*ready.Get(), 105.0, 0.0); }, rangeOfA},
        {"setting a B out of range", [&] { return Setting(0.0, 195.0); }, rangeOfB},
        {"planning to an A between two steps", [&] { return Plan(*ready.Get(), 7.4, 0.0); }, stepOfA},
        {"setting a B between two steps", [&] { return Setting(0.0, 7.0); }, stepOfB},
    });
}

TEST_F(Errors, NameTheWrongSetOfPoints) {
    const Points aSet = Head().ASet(45.0), bSet = Head().BSet(60.0);
    const Points lastBitOfB = With(aSet, 6, &HeadAlignmentDataItem::BPosition, std::nextafter(45.0, 0.0));
    const Points otherA = With(bSet, 1, &HeadAlignmentDataItem::APosition, 75.0);
    ExpectFailures({
        {"three A points", [&] { return Entering(Head().ASet(45.0, 3), bSet); }, tooFewA},
        {"three B points", [&] { return Entering(aSet, Head().BSet(60.0, 3)); }, tooFewB},
        {"B of one A point differs in its last bit", [&] { return Entering(lastBitOfB, bSet); }, bMoved},
        {"A of one B point differs", [&] { return Entering(aSet, otherA); }, aMoved},
        {"A points on one line", [&] { return Entering(OnOneLine(aSet), bSet); }, noCircle},
        {"B points on one line", [&] { return Entering(aSet, OnOneLine(bSet)); }, noCircle},
        {"A indexed from 1", [&] { return Entering(AlignmentArray::WithLowerBound(aSet, 1), AlignmentArray(bSet)); },
         arrayOfAnotherShape},
        {"B elements of numbers",
         [&] { return Entering(AlignmentArray(aSet), AlignmentArray::WithElementSize(bSet, 8)); }, arrayOfAnotherShape},
        {"no A array", [&] { return Entering(AlignmentArray::Null(), AlignmentArray(bSet)); }, noArray},
        {"no B array", [&] { return Entering(AlignmentArray(aSet), AlignmentArray::Null()); }, noArray},
    });
}

TEST_F(Errors, NameTheOperationOfTheGeometryFile) {
    const auto calculator = CreateCalculator();
    const auto nowhere = folder.Path("no such folder") / "head.ini";
    ExpectFailures({
        {"no such file",
         [&] { return ReturnedBy([&] { return calculator->LoadHeadGeometryFromFile(Bstr(nowhere).Address()); }); },
         notRead},
        {"an empty file", [&] { return Loading(""); }, notRead},
        {"a stored 999999999, which marks a missing number",
         [&] { return Loading("[HEADCENTRE]\r\nX=1\r\nY=2\r\nZ=999999999\r\n"); }, notRead},
        {"saving into a folder that does not exist",
         [&] { return ReturnedBy([&] { return calculator->SaveHeadGeometryToFile(Bstr(nowhere).Address()); }); },
         notWritten},
    });
}

TEST_F(Errors, DoNotAffectTheNextCall) {
    const auto calculator = At(15.0, 30.0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Plan(*calculator.Get(), 7.0, 0.0).code, QMV_E_INVALID_TARGET);
        EXPECT_EQ(calculator->EnterHeadGeometry(nullptr, nullptr), E_POINTER);
        EXPECT_EQ(Plan(*calculator.Get(), 45.0, 90.0).code, S_OK);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    }
}

} // namespace

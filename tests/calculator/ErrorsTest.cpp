#include "interface/ErrorCodes.h"
#include "tests/calculator/PreparedCalculator.h"
#include "tests/support/Bstr.h"
#include "tests/support/ExpectedFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <limits>

/// The code and the error record after every kind of failure.

namespace {

using Points = std::vector<HeadAlignmentDataItem>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Failure = ExpectedFailure;

/// The help file of the component's own errors, and that of failure codes that it passes on.
constexpr const wchar_t* fixedError = L"";
constexpr const wchar_t* passedOn = L"Unspecified";

class Errors : public PreparedCalculator {
protected:
    static Raised Entering(AlignmentArray& aAxisPoints, AlignmentArray& bAxisPoints) {
        const auto calculator = CreateCalculator();
        return ReturnedBy([&] { return calculator->EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()); });
    }
    static Raised Entering(const Points& aSet, const Points& bSet) {
        AlignmentArray aAxisPoints(aSet);
        AlignmentArray bAxisPoints(bSet);
        return Entering(aAxisPoints, bAxisPoints);
    }
    /// One set in an array of another shape, the other set right.
    static Raised EnteringA(AlignmentArray aAxisPoints) {
        AlignmentArray bAxisPoints(Head().BSet(60.0));
        return Entering(aAxisPoints, bAxisPoints);
    }
    static Raised EnteringB(AlignmentArray bAxisPoints) {
        AlignmentArray aAxisPoints(Head().ASet(45.0));
        return Entering(aAxisPoints, bAxisPoints);
    }
    static Points With(Points points, std::size_t index, double HeadAlignmentDataItem::*field, double value) {
        points.at(index).*field = value;
        return points;
    }
    /// All points in one place, with the angles of `points`.
    static Points InOnePlace(Points points) {
        for (auto& point : points) point = {point.APosition, point.BPosition, 1.0, 2.0, 3.0};
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

void ExpectRecords(const std::vector<Failure>& failures) {
    for (const Failure& failure : failures) ExpectRecord(failure);
}

TEST_F(Errors, NameOperationAndReasonForPositionsAndMoves) {
    const auto fresh = CreateCalculator();
    const auto unplaced = WithGeometry();
    const auto ready = At(0.0, 0.0);
    double a = 0.0;
    double b = 0.0;
    XYZData start{};
    constexpr const wchar_t* planning = L"CQMVCalculator::CalculateMove";
    constexpr const wchar_t* noGeometry = L"Head Geometry has not been supplied and/or loaded";
    constexpr const wchar_t* noPosition = L"Current Position is not known";
    constexpr const wchar_t* validating = L"CQMVCalculator::ValidateMoveTarget";
    ExpectRecords({
        {"getting a position that was never set",
         [&] { return ReturnedBy([&] { return fresh->GetCurrentHeadPosition(&a, &b); }); }, QMV_E_POSITION_UNKNOWN,
         L"CQMVCalculator::GetCurrentHeadPosition", noPosition, fixedError},
        {"planning without a geometry", [&] { return Plan(*fresh.Get(), 0.0, 0.0); }, QMV_E_NO_HEAD_GEOMETRY, planning,
         noGeometry, fixedError},
        {"planning without a position", [&] { return Plan(*unplaced.Get(), 0.0, 0.0); }, QMV_E_POSITION_UNKNOWN,
         planning, noPosition, fixedError},
        {"start without a geometry", [&] { return ReturnedBy([&] { return fresh->GetStartPosition(&start); }); },
         QMV_E_NO_HEAD_GEOMETRY, planning, noGeometry, fixedError},
        {"start without a position", [&] { return ReturnedBy([&] { return unplaced->GetStartPosition(&start); }); },
         QMV_E_POSITION_UNKNOWN, planning, noPosition, fixedError},
        {"planning to an A out of range", [&] { return Plan(*ready.Get(), 105.0, 0.0); }, QMV_E_INVALID_TARGET,
         validating, L"Invalid A Target Angle, value must be between 0 and 90.", fixedError},
        {"setting a B out of range", [&] { return Setting(0.0, 195.0); }, QMV_E_INVALID_TARGET, validating,
         L"Invalid B Target Angle, value must be between -180 and 180.", fixedError},
        {"planning to an A between two steps", [&] { return Plan(*ready.Get(), 7.4, 0.0); }, QMV_E_INVALID_TARGET,
         validating, L"Invalid A Target Angle, value must be a 15 degree interval.", fixedError},
        {"setting a B between two steps", [&] { return Setting(0.0, 7.0); }, QMV_E_INVALID_TARGET, validating,
         L"Invalid B Target Angle, value must be a 15 degree interval.", fixedError},
    });
}

TEST_F(Errors, NameTheWrongSetOfPoints) {
    const Points aSet = Head().ASet(45.0);
    const Points bSet = Head().BSet(60.0);
    const Points shortA = Head().ASet(45.0, 3);
    const Points shortB = Head().BSet(60.0, 3);
    const auto bOf = &HeadAlignmentDataItem::BPosition;
    const auto aOf = &HeadAlignmentDataItem::APosition;
    constexpr const wchar_t* validating = L"RoundThePole::ValidateSafeArrayData";
    constexpr const wchar_t* bMoved = L"Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture";
    constexpr const wchar_t* aMoved = L"Invalid Data. A Axis Must Remain Fixed During B Axis Data Capture";
    constexpr const wchar_t* fewA = L"Too Few A Axis Points Supplied";
    constexpr const wchar_t* fewB = L"Too Few B Axis Points Supplied";
    ExpectRecords({
        {"three A points", [&] { return Entering(shortA, bSet); }, QMV_E_TOO_FEW_POINTS, validating, fewA, fixedError},
        {"no A points", [&] { return Entering(Points{}, bSet); }, QMV_E_TOO_FEW_POINTS, validating, fewA, fixedError},
        {"three B points", [&] { return Entering(aSet, shortB); }, QMV_E_TOO_FEW_POINTS, validating, fewB, fixedError},
        {"three of each", [&] { return Entering(shortA, shortB); }, QMV_E_TOO_FEW_POINTS, validating, fewA, fixedError},
        {"B of one A point differs in its last bit",
         [&] { return Entering(With(aSet, 6, bOf, std::nextafter(45.0, 0.0)), bSet); }, QMV_E_FIXED_AXIS_MOVED,
         validating, bMoved, fixedError},
        {"B of the first A point is not a number", [&] { return Entering(With(aSet, 0, bOf, notANumber), bSet); },
         QMV_E_FIXED_AXIS_MOVED, validating, bMoved, fixedError},
        {"B of a later A point is not a number", [&] { return Entering(With(aSet, 3, bOf, notANumber), bSet); },
         QMV_E_FIXED_AXIS_MOVED, validating, bMoved, fixedError},
        {"A of one B point differs", [&] { return Entering(aSet, With(bSet, 1, aOf, 75.0)); }, QMV_E_FIXED_AXIS_MOVED,
         validating, aMoved, fixedError},
        {"B of one A point differs and there are too few B points",
         [&] { return Entering(With(aSet, 6, bOf, 0.0), shortB); }, QMV_E_FIXED_AXIS_MOVED, validating, bMoved,
         fixedError},
    });
}

TEST_F(Errors, RefuseArraysOfAnotherShape) {
    const Points aSet = Head().ASet(45.0);
    const Points bSet = Head().BSet(60.0);
    constexpr const wchar_t* validating = L"RoundThePole::ValidateSafeArrayData";
    constexpr const wchar_t* unspecified = L"Unspecified";
    const auto refused = [&](const char* how, std::function<Raised()> action) {
        return Failure{how, std::move(action), DISP_E_BADINDEX, validating, unspecified, passedOn};
    };
    ExpectRecords({
        refused("A indexed from 1", [&] { return EnteringA(AlignmentArray::WithLowerBound(aSet, 1)); }),
        refused("B indexed from 1", [&] { return EnteringB(AlignmentArray::WithLowerBound(bSet, 1)); }),
        refused("A indexed from 1000", [&] { return EnteringA(AlignmentArray::WithLowerBound(aSet, 1000)); }),
        refused("A elements a byte short", [&] { return EnteringA(AlignmentArray::WithElementSize(aSet, 39)); }),
        refused("B elements of numbers", [&] { return EnteringB(AlignmentArray::WithElementSize(bSet, 8)); }),
        refused("A elements too long", [&] { return EnteringA(AlignmentArray::WithElementSize(aSet, 48)); }),
        refused("A of two dimensions", [&] { return EnteringA(AlignmentArray::WithDimensions(aSet, 2)); }),
        refused("B of three dimensions", [&] { return EnteringB(AlignmentArray::WithDimensions(bSet, 3)); }),
        {"no A array", [&] { return EnteringA(AlignmentArray::Null()); }, E_INVALIDARG, validating, unspecified,
         passedOn},
        {"no B array", [&] { return EnteringB(AlignmentArray::Null()); }, E_INVALIDARG, validating, unspecified,
         passedOn},
    });
}

TEST_F(Errors, NameOperationAndStepOfTheVectorGeometry) {
    const Points aSet = Head().ASet(45.0);
    const Points bSet = Head().BSet(60.0);
    constexpr const wchar_t* fitting = L"RoundThePole::FitPointsToACircle";
    constexpr const wchar_t* step = L"Error Fitting points to a circle";
    const auto impossible = [&](const char* how, std::function<Raised()> action) {
        return Failure{how, std::move(action), QMV_E_GEOMETRY_IMPOSSIBLE, fitting, step, passedOn};
    };
    ExpectRecords({
        impossible("A points in one place", [&] { return Entering(InOnePlace(aSet), bSet); }),
        impossible("B points in one place", [&] { return Entering(aSet, InOnePlace(bSet)); }),
        impossible("A points on one line", [&] { return Entering(OnOneLine(aSet), bSet); }),
        impossible("B points on one line", [&] { return Entering(aSet, OnOneLine(bSet)); }),
        impossible("an A coordinate that is not a number",
                   [&] { return Entering(With(aSet, 2, &HeadAlignmentDataItem::ZPosition, notANumber), bSet); }),
        impossible("a B coordinate that is infinite",
                   [&] { return Entering(aSet, With(bSet, 4, &HeadAlignmentDataItem::XPosition, HUGE_VAL)); }),
    });
}

TEST_F(Errors, NameTheOperationOfTheGeometryFile) {
    constexpr const wchar_t* reading = L"RoundThePole::ReadDoubleFromIniFile";
    constexpr const wchar_t* notRead = L"Failed To Read from File";
    const auto calculator = CreateCalculator();
    const auto nowhere = folder.Path("no such folder") / "head.ini";
    ExpectRecords({
        {"no such file",
         [&] { return ReturnedBy([&] { return calculator->LoadHeadGeometryFromFile(Bstr(nowhere).Address()); }); },
         QMV_E_READ_FROM_FILE, reading, notRead, fixedError},
        {"an empty file", [&] { return Loading(""); }, QMV_E_READ_FROM_FILE, reading, notRead, fixedError},
        {"a stored 999999999, which marks a missing number",
         [&] { return Loading("[HEADCENTRE]\r\nX=1\r\nY=2\r\nZ=999999999\r\n"); }, QMV_E_READ_FROM_FILE, reading,
         notRead, fixedError},
        {"saving into a folder that does not exist",
         [&] { return ReturnedBy([&] { return calculator->SaveHeadGeometryToFile(Bstr(nowhere).Address()); }); },
         QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile", L"Failed To Write To File", fixedError},
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

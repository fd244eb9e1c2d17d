#include "interface/ErrorCodes.h"
#include "tests/support/Bstr.h"
#include "tests/support/PreparedCalculator.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <fstream>
#include <iterator>

/// A client enters, saves, loads and replaces geometries. (What a geometry and its file contain is tested in tests/head
/// and tests/persistence.)

namespace {

/// Without blank lines and line ends, in which the platforms' profile writers differ.
std::string LinesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string lines;
    for (const char c : std::string(std::istreambuf_iterator<char>(file), {}))
        if (c != '\r' && (c != '\n' || (!lines.empty() && lines.back() != '\n'))) lines += c;
    return lines;
}

void Write(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

class GeometryFiles : public PreparedCalculator {
protected:
    static constexpr const char* completeText =
        "[HEADCENTRE]\r\nX=1\r\nY=2\r\nZ=3\r\n[SAFEPOSITION]\r\nX=4\r\nY=5\r\nZ=6\r\n"
        "[AlignmentOffset]\r\nRequiredRotationAroundZ=0\r\n";

    HRESULT Load(IQMVCalculator& calculator) const { return calculator.LoadHeadGeometryFromFile(Bstr(path).Address()); }
    HRESULT Save(IQMVCalculator& calculator) const { return calculator.SaveHeadGeometryToFile(Bstr(path).Address()); }

    TemporaryFolder folder;
    std::filesystem::path path = folder.Path("head.ini");
};

TEST_F(GeometryFiles, SavedByANewObjectContainZeros) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(Save(*calculator.Get()), S_OK);
    EXPECT_EQ(LinesOf(path), "[HEADCENTRE]\nX=0.000000000e+00\nY=0.000000000e+00\nZ=0.000000000e+00\n"
                             "[SAFEPOSITION]\nX=0.000000000e+00\nY=0.000000000e+00\nZ=0.000000000e+00\n"
                             "[AlignmentOffset]\nRequiredRotationAroundZ=0.000000000e+00\n");
}

TEST_F(GeometryFiles, GiveTheMovesOfTheSavedGeometry) {
    // The rounding to ten digits: of coordinates of some hundreds, and of an angle of some 10 degrees at a radius of
    // 100.
    constexpr double tenDigits = 1e-6;
    const auto saver = At(15.0, -60.0);
    ASSERT_EQ(Save(*saver.Get()), S_OK);
    const auto loader = CreateCalculator();
    ASSERT_EQ(Load(*loader.Get()), S_OK);
    ASSERT_EQ(loader->SetCurrentHeadPosition(15.0, -60.0), S_OK);
    RequiredMoves saved{};
    RequiredMoves loaded{};
    ASSERT_EQ(saver->CalculateMove(75.0, 120.0, &saved), S_OK);
    ASSERT_EQ(loader->CalculateMove(75.0, 120.0, &loaded), S_OK);
    ExpectNear(loaded.ApproachUnLockLever, saved.ApproachUnLockLever, tenDigits);
    ExpectNear(loaded.EngageWithPeg, saved.EngageWithPeg, tenDigits);
    ExpectNear(loaded.DisengageFromPegToSafeZ, saved.DisengageFromPegToSafeZ, tenDigits);
    ExpectNear(loaded.DisengageFromLockLever, saved.DisengageFromLockLever, tenDigits);
    EXPECT_NEAR(loaded.RotateToPeg.RotationAngle, saved.RotateToPeg.RotationAngle, tenDigits);
}

TEST_F(GeometryFiles, KeepTheirOtherContentInASave) {
    Write(path, "[Machine]\r\nName=left\r\n[HEADCENTRE]\r\nX=old\r\nNote=kept\r\n[Other]\r\nX=7\r\n");
    ASSERT_EQ(Save(*WithGeometry().Get()), S_OK);
    const std::string lines = LinesOf(path);
    EXPECT_NE(lines.find("[Machine]\nName=left\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("Note=kept\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("[Other]\nX=7\n"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("X=old"), std::string::npos) << lines;
    const auto calculator = CreateCalculator();
    EXPECT_EQ(Load(*calculator.Get()), S_OK);
    ExpectNear(Pole(*calculator.Get()), {100.0, -200.0, 300.0}, 1e-6);
}

TEST_F(GeometryFiles, MakeAGeometryAvailableWhenLoaded) {
    Write(path, completeText);
    const auto calculator = CreateCalculator();
    ASSERT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    ASSERT_EQ(Load(*calculator.Get()), S_OK);
    EXPECT_EQ(Plan(*calculator.Get(), 0.0, 0.0).code, S_OK);
}

TEST_F(GeometryFiles, ThatCannotBeLoadedDoNotChangeTheAvailability) {
    Write(path,
          "[HEADCENTRE]\r\nX=10\r\nY=20\r\nZ=30\r\n[SAFEPOSITION]\r\nX=4\r\nY=5\r\nZ=6\r\n"); // without a rotation
    const auto fresh = CreateCalculator();
    ASSERT_EQ(fresh->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    EXPECT_EQ(Load(*fresh.Get()), QMV_E_READ_FROM_FILE);
    EXPECT_EQ(Plan(*fresh.Get(), 0.0, 0.0).code, QMV_E_NO_HEAD_GEOMETRY);

    const auto prepared = At(0.0, 0.0);
    EXPECT_EQ(Load(*prepared.Get()), QMV_E_READ_FROM_FILE);
    EXPECT_EQ(Plan(*prepared.Get(), 0.0, 0.0).code, S_OK);
}

TEST_F(GeometryFiles, AndEnteredGeometriesReplaceEachOther) {
    Write(path, completeText);
    const auto calculator = WithGeometry();
    ExpectNear(Pole(*calculator.Get()), {100.0, -200.0, 300.0});
    ASSERT_EQ(Load(*calculator.Get()), S_OK);
    EXPECT_EQ(Pole(*calculator.Get()), (XYZData{1.0, 2.0, 3.0}));
    SimulatedHead elsewhere = Head();
    elsewhere.pole = {-7.0, -8.0, -9.0};
    ASSERT_EQ(Enter(*calculator.Get(), elsewhere), S_OK);
    ExpectNear(Pole(*calculator.Get()), {-7.0, -8.0, -9.0});
}

class Geometry : public PreparedCalculator {};

TEST_F(Geometry, OfANewObjectHasItsHeadCentreAtTheOrigin) {
    EXPECT_EQ(Pole(*CreateCalculator().Get()), (XYZData{0.0, 0.0, 0.0}));
}

TEST_F(Geometry, StaysAvailableWhenANewOneIsRefused) {
    const auto fresh = CreateCalculator();
    ASSERT_EQ(fresh->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    const auto prepared = At(0.0, 0.0);
    for (IQMVCalculator2* const calculator : {fresh.Get(), prepared.Get()}) {
        AlignmentArray tooFew(Head().ASet(45.0, 3));
        AlignmentArray bAxisPoints(Head().BSet(60.0));
        EXPECT_EQ(calculator->EnterHeadGeometry(tooFew.Address(), bAxisPoints.Address()), QMV_E_TOO_FEW_POINTS);
    }
    EXPECT_EQ(Plan(*fresh.Get(), 0.0, 0.0).code, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(Plan(*prepared.Get(), 0.0, 0.0).code, S_OK);
}

TEST_F(Geometry, UsesTheSettingsAtTheTimeOfItsEntry) {
    const auto calculator = At(0.0, 0.0);
    settings.SetText("Head Centre To Lever Centre X Offset", "31.3");
    RequiredMoves before{};
    RequiredMoves after{};
    ASSERT_EQ(calculator->CalculateMove(0.0, 0.0, &before), S_OK);
    ASSERT_EQ(Enter(*calculator.Get(), Head()), S_OK);
    ASSERT_EQ(calculator->CalculateMove(0.0, 0.0, &after), S_OK);
    const double moved = std::hypot(after.EngageWithUnLockLever.XPosition - before.EngageWithUnLockLever.XPosition,
                                    after.EngageWithUnLockLever.YPosition - before.EngageWithUnLockLever.YPosition);
    EXPECT_NEAR(moved, 1.0, geometryTolerance);
}

} // namespace

#include "tests/soak/Client.h"

#include "tests/support/ErrorRecord.h"
#include "tests/support/SimulatedHead.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr const wchar_t* noGeometry = L"Head Geometry has not been supplied and/or loaded";
constexpr const wchar_t* noPosition = L"Current Position is not known";

void Require(bool isAsItMustBe, const char* what) {
    if (!isAsItMustBe) throw std::runtime_error(what);
}

std::vector<HeadAlignmentDataItem> OnALine() {
    auto points = SimulatedHead().ASet(45.0);
    double along = 0.0;
    for (auto& point : points) point = {point.APosition, point.BPosition, along += 1.0, 0.0, 0.0};
    return points;
}

/// The code that a call returns or throws.
template <typename Made> HRESULT CodeOf(Made&& call) {
    try {
        return call();
    } catch (const HRESULT thrown) {
        return thrown;
    }
}

} // namespace

SharedState::SharedState(const std::filesystem::path& folder, const Answers& theAnswers, std::uint64_t seed)
    : answers(theAnswers), nowhere(folder / "no such folder" / "head.ini"), scratch(folder / "scratch.ini"),
      scratchPath(folder / "scratch.ini"), fewPoints(SimulatedHead().ASet(45.0, 3)), onALine(OnALine()),
      goodB(SimulatedHead().BSet(60.0)), random(seed) {}

void Client::Call() {
    const struct {
        std::size_t share;
        void (Client::*make)();
    } kinds[] = {
        {400, &Client::Plan},
        {100, &Client::AskForStart},
        {100, &Client::AskForPole},
        {100, &Client::AskForPosition},
        {100, &Client::SetPosition},
        {40, &Client::PlanToInvalidTarget},
        {40, &Client::SetInvalidPosition},
        {50, &Client::ReplaceGeometry},
        {20, &Client::OfferInvalidGeometry},
        {5, &Client::Save},
        {15, &Client::SaveNowhere},
        {30, &Client::PassNoPointer},
    };
    constexpr std::size_t shares = 1000;
    std::size_t chosen = shared.Choose(shares);
    for (const auto& [share, make] : kinds) {
        if (chosen < share) return (this->*make)();
        chosen -= share;
    }
    throw std::logic_error("the shares do not add up");
}

void Client::SetFixedState() {
    Expect(Give(0), S_OK);
    Expect(calculator->SetCurrentHeadPosition(positions[0].a, positions[0].b), S_OK);
    position = 0;
    SetErrorInfo(0, nullptr);
}

void Client::Plan() {
    const std::size_t to = shared.Choose(positions.size());
    RequiredMoves moves{};
    const HRESULT code = CodeOf([&] { return calculator->CalculateMove(positions[to].a, positions[to].b, &moves); });
    if (!held) return Expect(code, QMV_E_NO_HEAD_GEOMETRY, noGeometry);
    if (!position) return Expect(code, QMV_E_POSITION_UNKNOWN, noPosition);
    Expect(code, S_OK);
    const auto& expected = shared.answers.Plan(*held, *position, to);
    Require(std::memcmp(&moves, expected.data(), sizeof moves) == 0, "a plan differs from that of a new calculator");
    position = to;
}

void Client::PlanToInvalidTarget() {
    RequiredMoves moves{};
    const HRESULT code = CodeOf([&] { return calculator->CalculateMove(105.0, 0.0, &moves); });
    if (!held) return Expect(code, QMV_E_NO_HEAD_GEOMETRY, noGeometry);
    if (!position) return Expect(code, QMV_E_POSITION_UNKNOWN, noPosition);
    Expect(code, QMV_E_INVALID_TARGET, L"Invalid A Target Angle, value must be between 0 and 90.");
}

void Client::AskForStart() {
    XYZData start{};
    const HRESULT code = calculator->GetStartPosition(&start);
    if (!held) return Expect(code, QMV_E_NO_HEAD_GEOMETRY, noGeometry);
    if (!position) return Expect(code, QMV_E_POSITION_UNKNOWN, noPosition);
    Expect(code, S_OK);
    const auto& expected = shared.answers.Plan(*held, *position, *position);
    Require(std::memcmp(&start, expected.data(), sizeof start) == 0,
            "a start position differs from that of a new calculator");
}

void Client::AskForPole() {
    XYZData pole{};
    Expect(calculator->GetPoleSpherePosition(&pole), S_OK);
    const XYZData expected = held ? shared.answers.Pole(*held) : XYZData{};
    Require(std::memcmp(&pole, &expected, sizeof pole) == 0, "a pole sphere differs from that of a new calculator");
}

void Client::AskForPosition() {
    HeadAngles angles{};
    const HRESULT code = calculator->GetCurrentHeadPosition(&angles.a, &angles.b);
    if (!position) return Expect(code, QMV_E_POSITION_UNKNOWN, noPosition);
    Expect(code, S_OK);
    Require(angles.a == positions[*position].a && angles.b == positions[*position].b, "a head position is wrong");
}

void Client::SetPosition() {
    const std::size_t chosen = shared.Choose(positions.size());
    Expect(calculator->SetCurrentHeadPosition(positions[chosen].a, positions[chosen].b), S_OK);
    position = chosen;
}

void Client::SetInvalidPosition() {
    Expect(calculator->SetCurrentHeadPosition(7.0, 0.0), QMV_E_INVALID_TARGET,
           L"Invalid A Target Angle, value must be a 15 degree interval.");
    position.reset();
}

void Client::ReplaceGeometry() { Expect(Give(shared.Choose(Answers::heldCount)), S_OK); }

// A failure can have replaced a part of the geometry. The client loads or enters a whole geometry, as the documents
// ask.
void Client::OfferInvalidGeometry() {
    switch (shared.Choose(4)) {
    case 0:
        Expect(calculator->EnterHeadGeometry(shared.fewPoints.Address(), shared.goodB.Address()), QMV_E_TOO_FEW_POINTS,
               L"Too Few A Axis Points Supplied");
        break;
    case 1:
        Expect(calculator->EnterHeadGeometry(shared.goodB.Address(), shared.goodB.Address()), QMV_E_FIXED_AXIS_MOVED,
               L"Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture");
        break;
    case 2:
        Expect(calculator->EnterHeadGeometry(shared.onALine.Address(), shared.goodB.Address()),
               QMV_E_GEOMETRY_IMPOSSIBLE, L"Error Fitting points to a circle");
        break;
    default:
        Expect(calculator->LoadHeadGeometryFromFile(shared.nowhere.Address()), QMV_E_READ_FROM_FILE,
               L"Failed To Read from File");
    }
    ReplaceGeometry();
}

void Client::Save() {
    if (!held) return ReplaceGeometry();
    Expect(calculator->SaveHeadGeometryToFile(shared.scratch.Address()), S_OK);
    std::ifstream file(shared.scratchPath, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    Require(content == shared.answers.SavedText(*held), "a saved file differs from that of a new calculator");
}

void Client::SaveNowhere() {
    Expect(calculator->SaveHeadGeometryToFile(shared.nowhere.Address()), QMV_E_WRITE_TO_FILE,
           L"Failed To Write To File");
}

void Client::PassNoPointer() {
    constexpr const wchar_t* isNull = L"A pointer passed to the method is null";
    if (shared.Choose(2) == 0) return Expect(calculator->GetPoleSpherePosition(nullptr), E_POINTER, isNull);
    Expect(calculator->EnterHeadGeometry(nullptr, shared.goodB.Address()), E_POINTER, isNull);
}

HRESULT Client::Give(std::size_t which) {
    held = which;
    return shared.answers.HeldAs(which).GiveTo(*calculator.Get());
}

void Client::Expect(HRESULT actual, HRESULT expected, const wchar_t* description) {
    ++shared.calls;
    Require(actual == expected, "a call has a wrong code");
    if (description == nullptr) return;
    const auto record = TakeErrorRecord();
    Require(record && record->description == description, "an error record has a wrong description");
}

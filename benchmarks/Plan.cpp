// The arithmetic of one plan, which is CalculateMove without reading the settings, beside the same 19 moves written by
// hand with Eigen and with KDL; and the part of the time that its heap allocations take.

#include "benchmarks/Allocations.h"
#include "benchmarks/Subjects.h"
#include "benchmarks/peers/PlanPeers.h"
#include "calculator/CQMVCalculator.h"
#include "maths/CQuaternion.h"
#include "tests/support/Bstr.h"

#include <array>
#include <cmath>
#include <cstring>
#include <memory>

namespace {

/// The calculator with access to its head. It is created here and not by a factory, so that all of it is in this
/// program, whose settings are constants.
class OpenCalculator final : public CQMVCalculator {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    const RoundThePole& Head() const noexcept { return headGeometry; }
};

/// Plans and their targets: each begins where the one before ended.
struct Tour {
    OpenCalculator calculator;
    std::unique_ptr<PlanPeer> eigen;
    std::unique_ptr<PlanPeer> kdl;
    const std::vector<HeadAngles> stops = AllHeadAngles();
    std::size_t at = 0;

    Tour() {
        Bstr file(std::filesystem::path(QMV40_BENCHMARK_HEAD));
        Verify(calculator.LoadHeadGeometryFromFile(file.Address()) == S_OK, "the head of the scenario");
        eigen = PlanPeer::OnEigen(calculator.Head());
        kdl = PlanPeer::OnKdl(calculator.Head());
        Verify(calculator.SetCurrentHeadPosition(stops.back().a, stops.back().b) == S_OK, "the first stop");
    }

    const HeadAngles& Next() noexcept {
        at = at + 1 < stops.size() ? at + 1 : 0;
        return stops[at];
    }
    const HeadAngles& Current() const noexcept { return stops[at]; }
};

using Numbers = std::array<double, sizeof(RequiredMoves) / sizeof(double)>;

Numbers NumbersOf(const RequiredMoves& moves) {
    Numbers numbers{};
    std::memcpy(numbers.data(), &moves, sizeof moves);
    return numbers;
}

/// Every number of the two records, millimetres and degrees. An arc of half a turn may have either direction.
void VerifySame(const RequiredMoves& ours, const RequiredMoves& peers) {
    constexpr double sameWithin = 1e-9;
    const Numbers left = NumbersOf(ours), right = NumbersOf(peers);
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double apart = std::fabs(left[i] - right[i]);
        const bool same = apart < sameWithin ||
                          (std::fabs(std::fabs(left[i]) - 180.0) < sameWithin && std::fabs(apart - 360.0) < sameWithin);
        Verify(same, "number " + std::to_string(i) + " of a plan");
    }
}

void VerifyPeers(Tour& tour) {
    for (const HeadAngles& from : tour.stops)
        for (const HeadAngles& to : tour.stops) {
            RequiredMoves ours{}, eigen{}, kdl{};
            tour.calculator.SetCurrentHeadPosition(from.a, from.b);
            tour.calculator.CalculateMove(to.a, to.b, &ours);
            tour.eigen->Plan(from, to, eigen);
            tour.kdl->Plan(from, to, kdl);
            VerifySame(ours, eigen);
            VerifySame(ours, kdl);
        }
}

double AllocationsOfAPlan(Tour& tour) {
    RequiredMoves moves{};
    const Allocations allocations;
    tour.calculator.CalculateMove(45.0, 90.0, &moves);
    return static_cast<double>(allocations.Count());
}

constexpr int allocationsOfAPlan = 8;

/// The heap allocations of one plan: for each of three positions a rotation of the head and its result, and two axes.
void AllocateLikeAPlan() {
    const auto allocate = [](std::size_t size) {
        char* const block = std::allocator<char>().allocate(size);
        benchmark::DoNotOptimize(block);
        return block;
    };
    const auto release = [](char* block, std::size_t size) { std::allocator<char>().deallocate(block, size); };
    for (int position = 0; position < 3; ++position) {
        char* const turn = allocate(sizeof(CQuaternion));
        release(allocate(sizeof(CMaVector)), sizeof(CMaVector));
        release(turn, sizeof(CQuaternion));
    }
    for (int axis = 0; axis < 2; ++axis) release(allocate(sizeof(CMaVector)), sizeof(CMaVector));
}

} // namespace

void AddPlan(Suite& suite) {
    const auto tour = std::make_shared<Tour>();
    VerifyPeers(*tour);
    suite.Time("plan ours", [tour] {
        RequiredMoves moves;
        const HeadAngles to = tour->Next();
        tour->calculator.CalculateMove(to.a, to.b, &moves);
        benchmark::DoNotOptimize(moves);
    });
    const auto timePeer = [&](const std::string& name, const PlanPeer& peer) {
        suite.Time(name, [tour, &peer] {
            RequiredMoves moves;
            const HeadAngles from = tour->Current();
            peer.Plan(from, tour->Next(), moves);
            benchmark::DoNotOptimize(moves);
        });
    };
    timePeer("plan eigen", *tour->eigen);
    timePeer("plan kdl", *tour->kdl);
    suite.Time("plan heap", [] { AllocateLikeAPlan(); });

    suite.Compare("plan, settings known", "19 moves", "plan ours", "Eigen by hand", "plan eigen", Limit{4.0, "<= 4"});
    suite.Compare("plan, settings known", "19 moves", "plan ours", "KDL by hand", "plan kdl");
    suite.Compare("of it: results on the heap", std::to_string(allocationsOfAPlan) + " allocations", "plan heap",
                  "whole plan", "plan ours");
    const double allocations = AllocationsOfAPlan(*tour);
    Verify(allocations == allocationsOfAPlan, "a plan makes " + std::to_string(allocations) + " allocations");
}

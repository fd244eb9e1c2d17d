// CalculateMove as a client calls it: through the shared library's interface, with a store of all fourteen settings
// that is read afresh at every plan.

#include "benchmarks/HeadAngles.h"
#include "benchmarks/Subjects.h"
#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"

#include <cstdlib>
#include <memory>

using namespace qmv40;

namespace {

/// A local file with all fourteen settings, and a missing file, which takes the least time.
constexpr const char* fullStore = QMV40_SCENARIOS "/settings-override/settings.reg";
constexpr const char* noStore = QMV40_SCENARIOS "/there is none";

void UseStore(const char* file) { ::setenv("QMV40_SETTINGS", file, 1); }

ComPointer<IQMVCalculator2> LoadedCalculator() {
    ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    Bstr file(std::filesystem::path(QMV40_BENCHMARK_HEAD));
    Verify(calculator->LoadHeadGeometryFromFile(file.Address()) == S_OK, "no geometry");
    return calculator;
}

double UnlockingTurn(IQMVCalculator2& calculator) {
    RequiredMoves moves{};
    calculator.SetCurrentHeadPosition(0.0, 0.0);
    calculator.CalculateMove(45.0, 90.0, &moves);
    return moves.UnLock.RotationAngle;
}

void VerifyReadsAfresh(IQMVCalculator2& calculator) {
    UseStore(noStore);
    const double byDefault = UnlockingTurn(calculator);
    UseStore(fullStore);
    Verify(byDefault == -135.0 && UnlockingTurn(calculator) == -120.0, "settings are read at every plan");
}

/// The number of pairs of 325 positions. The head can reach 175 of them, so their pairs are planned more than once.
constexpr int plansOfATour = 325 * 325;

void PlanTour(IQMVCalculator2& calculator, const std::vector<HeadAngles>& positions) {
    RequiredMoves moves;
    int plans = 0;
    while (plans < plansOfATour)
        for (const HeadAngles& from : positions)
            for (const HeadAngles& to : positions) {
                if (plans++ == plansOfATour) return;
                calculator.SetCurrentHeadPosition(from.a, from.b);
                calculator.CalculateMove(to.a, to.b, &moves);
                benchmark::DoNotOptimize(moves);
            }
}

} // namespace

void AddMoves(Suite& suite) {
    const auto calculator = LoadedCalculator();
    VerifyReadsAfresh(*calculator.Get());
    const auto positions = std::make_shared<const std::vector<HeadAngles>>(AllHeadAngles());
    const auto timeOne = [&](const std::string& name, const char* store) {
        suite.TimeByTheClock(name, [calculator, positions, store] {
            UseStore(store);
            PlanTour(*calculator.Get(), *positions);
        });
    };
    timeOne("moves with settings", fullStore);
    timeOne("moves without settings", noStore);
    const std::string subject = "CalculateMove, 14 settings in a file", size = "105 625 plans";
    suite.Report(subject, size, TimeOf("moves with settings"), Limit{2.0, "< 2 s"});
    suite.Compare(subject, size, "moves with settings", "without a store", "moves without settings");
}

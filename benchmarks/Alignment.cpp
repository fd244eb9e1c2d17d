// EnterHeadGeometry through the shared library's interface, from the smallest number of points to a million in each
// set: its time must be proportional to the points.

#include "benchmarks/Subjects.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/Calculator.h"
#include "tests/support/SimulatedHead.h"

#include <cmath>
#include <cstdlib>
#include <memory>

using namespace qmv40;

namespace {

struct Capture {
    AlignmentArray aAxisPoints, bAxisPoints;
};

constexpr double noiseOfTheProbe = 0.002;
constexpr const char* settings = QMV40_SCENARIOS "/settings-override/settings.reg";

std::shared_ptr<Capture> CaptureOf(std::size_t size) {
    const int count = static_cast<int>(size);
    SimulatedHead head;
    head.pole = {412.5, -178.25, -655.0};
    head.mountingAngle = 10.0;
    head.lockedToUnlocked = {0.02, -0.03, -1.62}; // as the scenario's settings say
    // Captured at B = 45, where the quadrant is unambiguous.
    return std::make_shared<Capture>(Capture{AlignmentArray(WithNoise(head.ASet(45.0, count), noiseOfTheProbe, 1)),
                                             AlignmentArray(WithNoise(head.BSet(60.0, count), noiseOfTheProbe, 2))});
}

std::string EnteringOf(std::size_t count) { return "alignment " + std::to_string(count); }
std::string CopyingOf(std::size_t count) { return "alignment copy " + std::to_string(count); }

void VerifyPole(IQMVCalculator2& calculator, std::size_t count) {
    // Four noisy points on a quarter circle determine the pole to this.
    constexpr double nearEnough = 0.05;
    XYZData pole{};
    Verify(calculator.GetPoleSpherePosition(&pole) == S_OK, "no pole");
    const double off = std::hypot(pole.XPosition - 412.5, pole.YPosition + 178.25, pole.ZPosition + 655.0);
    Verify(off < nearEnough, "the pole from " + std::to_string(count) + " points in each set");
}

/// The copies at the beginning of entering a capture.
void CopyBoth(Capture& capture) {
    for (AlignmentArray* const points : {&capture.aAxisPoints, &capture.bAxisPoints}) {
        SAFEARRAY* copy = nullptr;
        Verify(SafeArrayCopy(points->Get(), &copy) == S_OK, "a copy of the capture");
        benchmark::DoNotOptimize(copy->pvData);
        SafeArrayDestroy(copy);
    }
}

/// The exponent of a time as a power of the number of points: the slope of the straight line through the logarithms.
double Growth(const Timings& timings, const std::vector<std::size_t>& counts, std::string (*nameOf)(std::size_t)) {
    double x = 0.0, y = 0.0, xx = 0.0, xy = 0.0;
    for (const std::size_t count : counts) {
        const double logCount = std::log(static_cast<double>(count));
        const double logTime = std::log(timings.Median(nameOf(count)));
        x += logCount, y += logTime, xx += logCount * logCount, xy += logCount * logTime;
    }
    const auto n = static_cast<double>(counts.size());
    return (xy - x * y / n) / (xx - x * x / n);
}

/// From this number of points on, reading the settings takes a negligible part of the time.
constexpr std::size_t manyPoints = 1000;

/// Large blocks of memory cost more for each byte than small ones. Therefore the growth is compared with that of
/// copying the same capture, which is linear.
void AddGrowth(Suite& suite, const std::string& subject, const std::vector<std::size_t>& counts) {
    std::vector<std::size_t> many;
    for (const std::size_t count : counts)
        if (count >= manyPoints) many.push_back(count);
    const Figure entering{[many](const Timings& timings) { return Growth(timings, many, EnteringOf); }, "power"};
    const Figure copying{[many](const Timings& timings) { return Growth(timings, many, CopyingOf); }, "power"};
    const Figure ratio{[=](const Timings& timings) { return entering.value(timings) / copying.value(timings); }, ""};
    suite.Add({subject + ": growth", "from 2 x " + Grouped(manyPoints), entering, "copying the capture", copying, ratio,
               Limit{1.05, "<= 1.05"}});
}

} // namespace

void AddAlignment(Suite& suite) {
    constexpr std::size_t most = 1000000, mostWhenQuick = 10000;
    const std::string subject = "EnterHeadGeometry";
    ::setenv("QMV40_SETTINGS", settings, 1);
    const ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    std::vector<std::size_t> counts;
    for (const std::size_t count : {4UL, 7UL, 16UL, 40UL, 100UL, 1000UL, 10000UL, 100000UL, most}) {
        if (count > mostWhenQuick && !suite.IsLarge()) continue;
        const auto capture = CaptureOf(count);
        const auto enter = [calculator, capture] {
            ::setenv("QMV40_SETTINGS", settings, 1);
            const HRESULT result =
                calculator->EnterHeadGeometry(capture->aAxisPoints.Address(), capture->bAxisPoints.Address());
            benchmark::DoNotOptimize(result);
        };
        enter();
        VerifyPole(*calculator.Get(), count);
        suite.Time(EnteringOf(count), enter);
        suite.Time(CopyingOf(count), [capture] { CopyBoth(*capture); });
        counts.push_back(count);
        const Figure each{[count](const Timings& timings) {
                              return timings.Median(EnteringOf(count)) / (2.0 * static_cast<double>(count));
                          },
                          "s"};
        suite.Report(subject + ", each point", "2 x " + Grouped(count), each);
    }
    AddGrowth(suite, subject, counts);
}

#include "tools/diagnosis/Diagnosis.h"

#include "tests/support/ReferenceHeads.h"
#include "tests/tools/diagnosis/Captures.h"
#include "tools/diagnosis/MistakeJudgement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

using namespace qmv40;

namespace {

using diagnosis::Finding;
using diagnosis::Severity;
using testing::ElementsAre;
using Kind = diagnosis::FindingKind;

/// The finding of this kind and severity, which must be there.
const Finding& Found(const diagnosis::Diagnosis& diagnosis, Kind kind, Severity severity = Severity::Fault) {
    const Finding* const finding = FindingOf(diagnosis, kind);
    if (finding == nullptr || finding->severity != severity) throw std::runtime_error(TextOf(diagnosis));
    return *finding;
}

std::vector<Finding> WithoutNotes(const diagnosis::Diagnosis& diagnosis) {
    std::vector<Finding> findings = diagnosis.findings;
    std::erase_if(findings, [](const Finding& finding) { return finding.severity == Severity::Note; });
    return findings;
}

TEST(Diagnosis, FindsTheThreeReferenceHeadsThatComeOutWrong) {
    // The heads of which the component's rotation is not the angle at which the head was mounted.
    const std::map<std::string, Kind> wrong{{"case-41-000", Kind::TipOffAxis},
                                            {"case-41-010", Kind::RotationOnWrongSide},
                                            {"case-41-011", Kind::TipOffAxis}};
    const std::map<std::string, double> mountedAt{
        {"case-41-000", 30.0}, {"case-41-010", -0.8704975}, {"case-41-011", -2.15}};
    for (const ReferenceHead& head : LoadReferenceHeads()) {
        SCOPED_TRACE(head.name);
        const auto test =
            diagnosis::CaptureUnderTest{SetsOf(head.aAxisPoints, head.bAxisPoints), head.requiredRotationAroundZ};
        const auto diagnosis = diagnosis::Diagnose(test);
        ASSERT_TRUE(diagnosis.has_value());
        const auto findings = WithoutNotes(*diagnosis);
        if (!wrong.contains(head.name)) {
            EXPECT_TRUE(findings.empty()) << TextOf(*diagnosis);
            continue;
        }
        ASSERT_EQ(1u, findings.size()) << TextOf(*diagnosis);
        EXPECT_EQ(wrong.at(head.name), findings[0].kind) << TextOf(*diagnosis);
        EXPECT_EQ(Severity::Fault, findings[0].severity);
        EXPECT_NEAR(mountedAt.at(head.name), findings[0].reference, 0.01) << "what the head was mounted at";
        EXPECT_TRUE(findings[0].captureAt.has_value());
    }
}

TEST(Diagnosis, FindsTheWrongQuadrantOfAHeadCapturedAtB0) {
    SimulatedHead head = SomeSimulatedHead();
    head.mountingAngle = -3.0;
    head.stylus = {0.0, 0.0, -180.0};
    for (const double noise : {0.0, 1e-3, 5e-3}) {
        const Items bSet = WithNoise(head.BSet(75), noise, 2);
        const diagnosis::Diagnosis atZero = DiagnosisOf(WithNoise(head.ASet(0), noise, 1), bSet);
        const Finding& finding = Found(atZero, Kind::RotationOnWrongSide);
        EXPECT_NEAR(3.0, finding.figure, 0.02);
        EXPECT_NEAR(-3.0, finding.reference, 0.02);
        EXPECT_EQ(45.0, finding.captureAt);
        const diagnosis::Diagnosis at45 = DiagnosisOf(WithNoise(head.ASet(45), noise, 1), bSet);
        EXPECT_TRUE(at45.findings.empty()) << TextOf(at45);
    }
}

TEST(Diagnosis, RefusesAHeadCentreThatTheFittedHeadContradicts) {
    const SimulatedHead head = SomeSimulatedHead();
    diagnosis::CaptureUnderTest test =
        UnderTest(WithNoise(head.ASet(45), 1e-3, 1), WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2));
    EXPECT_TRUE(diagnosis::Diagnose(test).value().findings.empty());
    // Far beyond the standard deviation of some micrometres.
    test.headCentre->z += 0.3;
    const diagnosis::Diagnosis diagnosis = diagnosis::Diagnose(test).value();
    for (const auto kind : {Kind::CentreDisagrees, Kind::ComponentDiffers}) {
        const Finding& finding = Found(diagnosis, kind);
        EXPECT_NEAR(0.3, finding.figure, 0.02);
    }
}

TEST(Diagnosis, WarnsOfATiltArcThatIsTooShortForTheCentreAskedFor) {
    const SimulatedHead head = SomeSimulatedHead();
    const Items bSet = WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2);
    const auto diagnosed = [&](double lastA, double centreWithin) {
        diagnosis::CaptureUnderTest test = UnderTest(WithNoise(head.ASet(45, 7, 0, lastA), 1e-3, 1), bSet);
        test.centreWithin = centreWithin;
        return diagnosis::Diagnose(test).value();
    };
    EXPECT_TRUE(diagnosed(90, 0.05).findings.empty());
    const diagnosis::Diagnosis shortArc = diagnosed(30, 0.05);
    ASSERT_EQ(1u, shortArc.findings.size()) << TextOf(shortArc);
    EXPECT_EQ(Kind::TiltArcShort, shortArc.findings[0].kind);
    EXPECT_EQ(Severity::Warning, shortArc.findings[0].severity);
    EXPECT_EQ(0.05, shortArc.findings[0].reference);
    // The standard deviation of the centre is 29 times the noise. The figure is twice as much, and the noise is
    // estimated from seven and thirteen points.
    EXPECT_NEAR(2.0 * 29.0 * 1e-3, shortArc.findings[0].figure, 0.015);
    EXPECT_TRUE(diagnosed(30, 0.2).findings.empty()) << "0.2 mm are enough";
    EXPECT_NE(nullptr, FindingOf(diagnosed(90, 0.001), Kind::CentreUncertain)) << "0.001 mm are asked for";
}

TEST(Diagnosis, DoesNotTrustAFewPointsThatAgreeByLuck) {
    // Without any noise a short arc would give the centre exactly.
    const SimulatedHead head = SomeSimulatedHead();
    const diagnosis::Diagnosis exact = DiagnosisOf(head.ASet(45, 7, 0, 30), head.BSet(75));
    EXPECT_LT(exact.axes.CentreStandardDeviation(), 1e-9);
    EXPECT_NE(nullptr, FindingOf(exact, Kind::TiltArcShort)) << TextOf(exact);
}

TEST(Diagnosis, WarnsOfASwivelArcThatIsTooShort) {
    const SimulatedHead head = SomeSimulatedHead();
    const diagnosis::Diagnosis diagnosis =
        DiagnosisOf(WithNoise(head.ASet(45), 1e-3, 1), WithNoise(head.BSet(75, 7, 0, 30), 1e-3, 2));
    EXPECT_NE(nullptr, FindingOf(diagnosis, Kind::SwivelArcShort)) << TextOf(diagnosis);
    EXPECT_FALSE(Has(diagnosis.findings, Severity::Fault)) << TextOf(diagnosis);
}

TEST(Diagnosis, CallsAxesThatAreNearlyParallelAFault) {
    // The A set turned about B by mistake, its angles written down as if it had been A: a finite, far-off centre.
    const SimulatedHead head = SomeSimulatedHead();
    Items aSet = WithNoise(head.BSet(60, 7, 0, 90), 1e-3, 1);
    for (HeadAlignmentDataItem& item : aSet) {
        item.APosition = item.BPosition;
        item.BPosition = 45.0;
    }
    const diagnosis::Diagnosis diagnosis = DiagnosisOf(aSet, WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2));
    const Finding& finding = Found(diagnosis, Kind::AxesParallel);
    EXPECT_LT(finding.figure, 1.0);
}

TEST(Diagnosis, NotesThatFourPointsAreTooFewToJudgeOne) {
    const SimulatedHead head = SomeSimulatedHead();
    const diagnosis::Diagnosis diagnosis = DiagnosisOf(head.ASet(45, 4), head.BSet(75));
    const Finding& finding = Found(diagnosis, Kind::FewPoints, Severity::Note);
    EXPECT_THAT(finding.points, ElementsAre(0, 1, 2, 3));
    EXPECT_FALSE(diagnosis.points[0].influence.has_value());
    EXPECT_TRUE(diagnosis.points[4].influence.has_value());
}

TEST(Diagnosis, ShowsWhatLeavingAPointOutChanges) {
    const SimulatedHead head = SomeSimulatedHead();
    const Items aSet = WithNoise(head.ASet(45), 1e-3, 1), bSet = WithNoise(head.BSet(75), 1e-3, 2);
    const diagnosis::Diagnosis all = DiagnosisOf(aSet, bSet);
    for (const std::size_t left : {0u, 3u, 9u}) {
        Items fewerA = aSet, fewerB = bSet;
        if (left < aSet.size()) {
            fewerA.erase(fewerA.begin() + static_cast<std::ptrdiff_t>(left));
        } else {
            fewerB.erase(fewerB.begin() + static_cast<std::ptrdiff_t>(left - aSet.size()));
        }
        const diagnosis::Diagnosis fewer = DiagnosisOf(fewerA, fewerB);
        double shift = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            shift = std::hypot(shift, fewer.axes.headCentre[i].value - all.axes.headCentre[i].value);
        }
        EXPECT_NEAR(shift, all.points[left].influence->centreShift, 1e-7) << left;
        const double turn = UnderTest(fewerA, fewerB).rotation - UnderTest(aSet, bSet).rotation;
        // The component uses the normal of the fitted plane. It differs from that of the circle by the square of the
        // noise.
        EXPECT_NEAR(turn, all.points[left].influence->rotationShift, 1e-6) << left;
    }
}

TEST(Diagnosis, NamesAPointThatStandsOutWithoutBeingWrong) {
    const SimulatedHead head = SomeSimulatedHead();
    Items bSet = WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2);
    bSet[5].ZPosition += 0.03;
    const diagnosis::Diagnosis diagnosis = DiagnosisOf(WithNoise(head.ASet(45), 1e-3, 1), bSet);
    const Finding& finding = Found(diagnosis, Kind::PointSuspicious, Severity::Warning);
    EXPECT_THAT(finding.points, ElementsAre(12));
    EXPECT_FALSE(Has(diagnosis.findings, Severity::Fault));
}

TEST(Diagnosis, NoticesASetThatScattersMoreThanTheOther) {
    const SimulatedHead head = SomeSimulatedHead();
    const diagnosis::Diagnosis diagnosis =
        DiagnosisOf(WithNoise(head.ASet(45), 2e-2, 1), WithNoise(head.BSet(75, 13, -180, 180), 1e-3, 2));
    EXPECT_TRUE(diagnosis.noise.isUneven);
    EXPECT_NE(nullptr, FindingOf(diagnosis, Kind::NoiseUneven)) << TextOf(diagnosis);
    EXPECT_GT(diagnosis.noise.perSet.aSet, 5.0 * diagnosis.noise.perSet.bSet);
}

TEST(Diagnosis, OfUnevenNoiseFindsNoContradiction) {
    const SimulatedHead head = SomeSimulatedHead();
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        const diagnosis::Diagnosis diagnosis = DiagnosisOf(WithNoise(head.ASet(45), 2e-2, seed),
                                                           WithNoise(head.BSet(75, 13, -180, 180), 1e-3, seed + 100));
        EXPECT_EQ(nullptr, FindingOf(diagnosis, Kind::PointsContradict)) << "seed " << seed << "\n"
                                                                         << TextOf(diagnosis);
    }
}

/// A head that is not the ideal one, captured with noise.
struct RealHead {
    double lean, squareness; ///< degrees
    double axisOffset;       ///< mm
    double indexError;       ///< standard deviation of the angles at the index positions, degrees

    diagnosis::Diagnosis Captured(std::uint64_t seed) const {
        std::mt19937_64 generator(seed);
        std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
        SimulatedHead head;
        head.pole = {100.0 * anywhere(generator), 100.0 * anywhere(generator), -500.0};
        head.mountingAngle = 3.0 * anywhere(generator);
        head.stylus = {anywhere(generator), anywhere(generator), -150.0 + 80.0 * anywhere(generator)};
        const double direction = 3.0 * anywhere(generator);
        head.leanAboutX = lean * std::cos(direction);
        head.leanAboutY = lean * std::sin(direction);
        head.squareness = squareness;
        head.axisOffset = axisOffset;
        std::map<double, double> tilts, swivels;
        std::normal_distribution<double> normal(0.0, 1.0);
        const auto captured = [&](Items items) {
            for (HeadAlignmentDataItem& item : items) {
                const double a = tilts.try_emplace(item.APosition, indexError * normal(generator)).first->second;
                const double b = swivels.try_emplace(item.BPosition, indexError * normal(generator)).first->second;
                item = head.Point({item.APosition, item.BPosition}, {item.APosition + a, item.BPosition + b});
            }
            return WithNoise(items, 1e-3, generator());
        };
        const Items aSet = captured(SimulatedHead().ASet(45));
        return DiagnosisOf(aSet, captured(SimulatedHead().BSet(75, 10, -180, 90)));
    }
};

TEST(Diagnosis, OfAHeadWithSmallErrorsIsNoFault) {
    const struct {
        RealHead head;
        std::vector<Kind> warnings;
        const char* why;
    } cases[] = {{{0.02, 0.01, 0.01, 0.0}, {}, "as heads are"},
                 {{0.3, 0.0, 0.0, 0.0}, {Kind::HeadLeans}, "mounted askew"},
                 {{0.0, 0.2, 0.0, 0.0}, {Kind::AxesNotSquare}, "axes out of square"},
                 {{0.0, 0.0, 0.08, 0.0}, {Kind::AxesApart}, "axes that do not meet"},
                 {{0.3, 0.2, 0.08, 0.0}, {Kind::HeadLeans, Kind::AxesNotSquare, Kind::AxesApart}, "all together"},
                 {{0.0, 0.0, 0.0, 0.01}, {}, "index positions that are a little off"}};
    for (const auto& each : cases) {
        for (std::uint64_t seed = 0; seed < 25; ++seed) {
            SCOPED_TRACE(each.why + (", seed " + std::to_string(seed)));
            const diagnosis::Diagnosis diagnosis = each.head.Captured(seed);
            EXPECT_FALSE(Has(diagnosis.findings, Severity::Fault)) << TextOf(diagnosis);
            for (const Kind kind : each.warnings) {
                EXPECT_NE(nullptr, FindingOf(diagnosis, kind)) << NameOf(kind) << " is missing\n" << TextOf(diagnosis);
            }
        }
    }
}

TEST(Diagnosis, OfAHeadWithLargeErrorsIsAFault) {
    const struct {
        RealHead head;
        Kind kind;
    } cases[] = {{{3.0, 0.0, 0.0, 0.0}, Kind::HeadLeans},
                 {{0.0, 3.0, 0.0, 0.0}, Kind::AxesNotSquare},
                 {{0.0, 0.0, 2.0, 0.0}, Kind::AxesApart}};
    for (const auto& each : cases) {
        EXPECT_EQ(each.kind, Found(each.head.Captured(1), each.kind).kind);
    }
}

TEST(Diagnosis, CallsPointsThatFollowNoHeadAContradiction) {
    std::mt19937_64 generator(5);
    std::uniform_real_distribution<double> anywhere(-100.0, 100.0);
    Items aSet = SimulatedHead().ASet(45), bSet = SimulatedHead().BSet(75);
    for (Items* const set : {&aSet, &bSet}) {
        for (HeadAlignmentDataItem& item : *set) {
            item.XPosition = anywhere(generator);
            item.YPosition = anywhere(generator);
            item.ZPosition = anywhere(generator);
        }
    }
    const diagnosis::Diagnosis diagnosis = DiagnosisOf(aSet, bSet);
    const Finding& finding = Found(diagnosis, Kind::PointsContradict);
    EXPECT_EQ(3u, finding.points.size());
    EXPECT_TRUE(std::ranges::is_sorted(finding.points)) << "a message counts on their order";
    const double rms = diagnosis::fit::FitHead(SetsOf(aSet, bSet).points).Rms();
    EXPECT_NEAR(rms, finding.figure, 1e-9 * rms) << "the shift by unlocking changes no residual, except by rounding";
}

TEST(Diagnosis, BelievesUpToThreeMistakesAndOneOverARun) {
    using Error = diagnosis::fit::ModelError;
    const captures::CapturedSets sets = SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75));
    const auto place = [](std::size_t point, double size) {
        return Error{Error::Kind::Place, point, point + 1, {size, 0.0, 0.0}};
    };
    const auto swap = [](std::size_t point) {
        return Error{
            .kind = Error::Kind::TiltAngle, .first = point, .last = point + 1, .values = {0.5}, .isSwap = true};
    };
    const Error run{Error::Kind::Place, 4, 8, {2.0, 0.0, 0.0}};
    const struct {
        std::vector<Error> errors;
        bool areTooMany;
        const char* why;
    } cases[] = {{{}, false, "none"},
                 {{place(0, 2), place(1, 2), place(2, 2)}, false, "three points"},
                 {{place(0, 2), place(1, 2), place(2, 2), place(3, 2)}, true, "four points"},
                 {{place(0, 2), place(1, 2), place(2, 2), place(3, 1e-6)}, false, "the fourth is too small"},
                 {{place(0, 2), place(1, 2), swap(2), swap(3)}, false, "a swap has two errors"},
                 {{place(0, 2), place(1, 2), place(4, 2), swap(2), swap(3)}, true, "three points, then a swap"},
                 {{swap(2), swap(3), place(0, 2), place(1, 2), place(4, 2)}, true, "a swap, then three points"},
                 {{run, place(0, 2), place(1, 2)}, false, "a run and two points"},
                 {{run, place(0, 2), place(1, 2), place(2, 2)}, true, "a run and three points"},
                 {{run, Error{Error::Kind::Place, 0, 3, {0.0, 2.0, 0.0}}}, true, "two runs"}};
    for (const auto& each : cases) {
        const diagnosis::fit::HeadModel model{{}, 0.0, {0.0, 0.0, -120.0}, each.errors};
        EXPECT_EQ(each.areTooMany, diagnosis::MistakesAreTooMany(sets, model)) << each.why;
    }
}

TEST(JudgeMistake, NamesEachSwapOnceInAnyOrder) {
    diagnosis::CaptureUnderTest test{SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75))};
    using Error = diagnosis::fit::ModelError;
    const auto swap = [](Error::Kind kind, std::size_t i) {
        return Error{
            .kind = kind, .first = i, .last = i + 1, .values = {0.3, 0.0, 0.0}, .isFixed = true, .isSwap = true};
    };
    const auto pair = [&](Error::Kind kind, std::size_t i, std::size_t j) {
        return std::vector{swap(kind, i), swap(kind, j)};
    };
    const auto inA = pair(Error::Kind::TiltAngle, 0, 5), inB = pair(Error::Kind::SwivelAngle, 9, 12);
    for (const auto& [first, second] : {std::pair{inA, inB}, {inB, inA}}) {
        diagnosis::fit::HeadModel model{{}, 0.0, {0.0, 0.0, -120.0}, first};
        model.errors.insert(model.errors.end(), second.begin(), second.end());
        for (std::size_t i = 0; i < 4; i += 2) {
            const auto finding = diagnosis::JudgeMistake(test, model, i);
            ASSERT_TRUE(finding.has_value());
            EXPECT_EQ((std::vector{model.errors[i].first, model.errors[i + 1].first}), finding->points);
            EXPECT_FALSE(diagnosis::JudgeMistake(test, model, i + 1).has_value());
        }
    }
}

TEST(Diagnosis, TakesNoResidualsFromTheSearchedPartOfARewrittenCapture) {
    Items aSet, bSet;
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        for (HeadAlignmentDataItem item : WithNoise(SimulatedHead().ASet(45), 2e-3, 2 * seed)) {
            for (double* const each : {&item.XPosition, &item.YPosition, &item.ZPosition}) *each /= 25.4;
            aSet.push_back(item);
        }
        std::ranges::copy(WithNoise(SimulatedHead().BSet(75), 2e-3, 2 * seed + 1), std::back_inserter(bSet));
    }
    const auto diagnosis = diagnosis::Diagnose({SetsOf(aSet, bSet)});
    ASSERT_TRUE(diagnosis && diagnosis->rewriting);
    ASSERT_LT(diagnosis->head.residuals.size(), diagnosis->points.size()) << "only a part was searched";
    EXPECT_FALSE(diagnosis->noise.isUneven) << "that would need the residuals of all points";
}

TEST(Diagnosis, IsMissingForPointsThatFormNoCircle) {
    diagnosis::CaptureUnderTest test{SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75))};
    for (captures::CapturedPoint& point : test.sets.points) point.position = {1.0, 2.0, 3.0};
    EXPECT_FALSE(diagnosis::Diagnose(test).has_value());
}

TEST(Diagnosis, IsDefinedForAnyNumbers) {
    std::mt19937_64 generator(3);
    const double nasty[] = {0.0, -0.0, 1.0, 90.0, -1e-300, 1e-12, 1e6, -1e15, 1e155, 1e300, 360000.0};
    std::uniform_int_distribution<std::size_t> any(0, std::size(nasty) - 1);
    const auto number = [&] { return nasty[any(generator)]; };
    for (int round = 0; round < 150; ++round) {
        SCOPED_TRACE(round);
        diagnosis::CaptureUnderTest test{SetsOf(SimulatedHead().ASet(45, 5), SimulatedHead().BSet(75, 5)), number()};
        for (captures::CapturedPoint& point : test.sets.points) {
            if (round % 3 != 0) point.position = {number(), number(), number()};
            if (round % 3 != 1) point = {number(), number(), point.position};
        }
        const auto diagnosis = diagnosis::Diagnose(test);
        if (!diagnosis) continue;
        EXPECT_EQ(test.sets.points.size(), diagnosis->points.size());
        EXPECT_FALSE(TextOf(*diagnosis).empty()) << "such a capture has at least one finding";
    }
}

TEST(FindingNames, AreAllThereAndAllDifferent) {
    std::map<std::string_view, int> names;
    for (int kind = 0; kind <= static_cast<int>(Kind::FewPoints); ++kind) {
        const std::string_view name = NameOf(static_cast<Kind>(kind));
        EXPECT_FALSE(name.empty()) << kind;
        EXPECT_EQ(1, ++names[name]) << name;
    }
}

} // namespace

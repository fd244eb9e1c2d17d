// Very many captures of heads on paper, faultless and spoilt: how often a faultless one is called into question, and
// whether each mistake is found out for what it is.

#include "tests/tools/diagnosis/SpoiltCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

TEST(FaultlessCaptures, HaveNoFindings) {
    constexpr int captures = 600;
    // Fewer than one in a thousand may be: with 600, more than three are a chance of one in three hundred.
    constexpr int mostDoubted = 3;
    int doubted = 0;
    for (int seed = 0; seed < captures; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const DrawnCapture capture(static_cast<std::uint64_t>(seed));
        const diagnosis::Diagnosis diagnosis = DiagnosisOf(capture.aSet, capture.bSet);
        EXPECT_FALSE(diagnosis.Has(diagnosis::Severity::Fault)) << TextOf(diagnosis);
        // A finding about precision does not call the capture into question.
        for (const diagnosis::Finding& finding : diagnosis.findings) {
            const bool isOfPrecision = finding.kind == diagnosis::FindingKind::TiltArcShort ||
                                       finding.kind == diagnosis::FindingKind::SwivelArcShort ||
                                       finding.kind == diagnosis::FindingKind::CentreUncertain ||
                                       finding.kind == diagnosis::FindingKind::RotationUncertain;
            if (finding.severity == diagnosis::Severity::Warning && !isOfPrecision) ++doubted;
        }
    }
    EXPECT_LE(doubted, mostDoubted);
}

TEST(SpoiltCaptures, AreFoundOutForWhatTheyAre) {
    constexpr int captures = 40;
    for (const Mistake& mistake : AllMistakes()) {
        int spoilt = 0;
        for (int seed = 0; seed < captures; ++seed) {
            SCOPED_TRACE(mistake.name + (", seed " + std::to_string(seed)));
            DrawnCapture capture(static_cast<std::uint64_t>(1000 + seed));
            const auto expected = mistake.make(capture);
            if (!expected) continue;
            ++spoilt;
            const diagnosis::Diagnosis diagnosis = DiagnosisOf(capture.aSet, capture.bSet);
            const diagnosis::Finding* const finding = FindingOf(diagnosis, expected->kind);
            ASSERT_NE(nullptr, finding) << TextOf(diagnosis) << "noise " << capture.noise << ", " << capture.aSet.size()
                                        << " and " << capture.bSet.size() << " points";
            EXPECT_EQ(diagnosis::Severity::Fault, finding->severity) << TextOf(diagnosis);
            EXPECT_EQ(expected->points, finding->points) << TextOf(diagnosis);
            EXPECT_EQ(diagnosis::Severity::Fault, diagnosis.findings.front().severity) << "the gravest come first";
        }
        EXPECT_GE(spoilt, captures / 4) << mistake.name << " was hardly tried";
    }
}

} // namespace

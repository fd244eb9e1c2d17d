#include "tests/tools/diagnosis/Captures.h"

#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sstream>

using namespace qmv40;

namespace {

/// Every test of this program runs without settings.
class NoSettings : public testing::Environment {
public:
    void SetUp() override { settings.emplace(); }
    void TearDown() override { settings.reset(); }

private:
    std::optional<SettingsFixture> settings;
};

const testing::Environment* const noSettings =
    testing::AddGlobalTestEnvironment(std::make_unique<NoSettings>().release());

} // namespace

SimulatedHead SomeSimulatedHead() {
    SimulatedHead head;
    head.pole = {87.325, 640.9, -712.35};
    head.mountingAngle = -1.35;
    head.stylus = {0.4, -0.3, -180.0};
    return head;
}

diagnosis::Diagnosis DiagnosisOf(const Items& aSet, const Items& bSet) {
    auto diagnosis = diagnosis::Diagnose(UnderTest(aSet, bSet));
    if (!diagnosis) throw std::runtime_error("there is no diagnosis");
    return *std::move(diagnosis);
}

const diagnosis::Finding* FindingOf(const diagnosis::Diagnosis& diagnosis, diagnosis::FindingKind kind) {
    for (const diagnosis::Finding& finding : diagnosis.findings) {
        if (finding.kind == kind) return &finding;
    }
    return nullptr;
}

std::string TextOf(const diagnosis::Diagnosis& diagnosis) {
    std::ostringstream text;
    for (const diagnosis::Finding& finding : diagnosis.findings) {
        text << NameOf(finding.severity) << ' ' << NameOf(finding.kind) << ' ' << finding.figure << ' '
             << finding.reference << " points";
        for (const std::size_t point : finding.points) text << ' ' << point;
        text << '\n';
    }
    return text.str();
}

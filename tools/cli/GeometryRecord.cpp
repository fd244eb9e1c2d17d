#include "tools/cli/GeometryRecord.h"

#include "tools/diagnosis/DiagnosisReport.h"
#include "tools/record/CapturePicture.h"
#include "tools/settings/HeadSettings.h"
#include "tools/text/Numbers.h"

#include <ctime>

namespace qmv40::cli {

namespace {

using record::RecordSection;

std::string Fixed(double value, int decimals, const std::string& unit) {
    return text::FixedText(value, decimals) + " " + unit;
}

/// The machine's own time: 2026-11-22 09:30.
std::string Now() {
    const std::time_t now = std::time(nullptr);
    const std::tm* const local = std::localtime(&now); // NOLINT(concurrency-mt-unsafe): the tool has one thread
    char words[32]{};
    if (local == nullptr || std::strftime(words, sizeof words, "%Y-%m-%d %H:%M", local) == 0) return "unknown";
    return words;
}

class Recorder {
public:
    explicit Recorder(const RecordedGeometry& theGeometry) : geometry(theGeometry) {}

    record::Record Made() const {
        record::Record record;
        record.title = "Geometry of head " + (geometry.headNumber.empty() ? "(no number given)" : geometry.headNumber);
        record.verdict = diagnosis::VerdictOf(geometry.judged.findings);
        record.meaning = Meaning(record.verdict);
        record.findings = RecordedFindings(geometry.judged, geometry.files);
        record.picture =
            record::CapturePicture({geometry.judged.capture.sets, geometry.files, geometry.judged.findings});
        record.sections = {Occasion(), Geometry(), Capture(), Known(), Settings()};
        return record;
    }

private:
    static std::string Meaning(const std::string& verdict) {
        if (verdict == "good") return "Circles, axes and angles agree.";
        return verdict == "fault" ? "The capture contradicts itself. Do not use this geometry."
                                  : "The geometry is right, but not as good as it should be.";
    }

    RecordSection Occasion() const {
        return {"Occasion",
                {},
                {{"date", Now()},
                 {"head number", geometry.headNumber.empty() ? "not given" : geometry.headNumber},
                 {"geometry file", geometry.geometryFile.empty() ? "not written" : geometry.geometryFile},
                 {"program", std::string("qmv40 ") + QMV40_VERSION}}};
    }

    RecordSection Geometry() const {
        RecordSection section{"Geometry", {"", "", "standard deviation"}, {}};
        const double centre[] = {geometry.judged.head.headCentre.XPosition, geometry.judged.head.headCentre.YPosition,
                                 geometry.judged.head.headCentre.ZPosition};
        const char* const names[] = {"head centre X", "head centre Y", "head centre Z"};
        for (std::size_t i = 0; i < 3; ++i) {
            section.rows.push_back(
                {names[i], Fixed(centre[i], 4, "mm"),
                 geometry.judged.diagnosis
                     ? Fixed(geometry.judged.diagnosis->axes.headCentre[i].standardDeviation, 4, "mm")
                     : ""});
        }
        section.rows.push_back({"turned about Z", Fixed(geometry.judged.head.rotationAroundZ, 4, "deg"),
                                geometry.judged.diagnosis
                                    ? Fixed(geometry.judged.diagnosis->axes.rotationStandardDeviation, 4, "deg")
                                    : ""});
        section.rows.push_back({"safe height Z", Fixed(geometry.judged.head.safePosition.ZPosition, 4, "mm"), ""});
        if (geometry.judged.diagnosis) AddAxes(section);
        return section;
    }
    void AddAxes(RecordSection& section) const {
        const diagnosis::fit::HeadAxes& axes = geometry.judged.diagnosis->axes;
        section.rows.push_back({"A axis passes B axis at", Fixed(std::abs(axes.axisOffset.value), 4, "mm"),
                                Fixed(axes.axisOffset.standardDeviation, 4, "mm")});
        section.rows.push_back({"axes out of square by", Fixed(std::abs(axes.squareness.value), 4, "deg"),
                                Fixed(axes.squareness.standardDeviation, 4, "deg")});
        section.rows.push_back(
            {"B axis off the vertical by", Fixed(axes.offVertical, 4, "deg"),
             Fixed(std::hypot(axes.offVerticalTowardsX.standardDeviation, axes.offVerticalTowardsY.standardDeviation),
                   4, "deg")});
    }

    RecordSection Capture() const {
        RecordSection section{"Capture", {"", "A set", "B set"}, {}};
        const auto& a = geometry.files.aAxis;
        const auto& b = geometry.files.bAxis;
        section.rows.push_back({"file", a.name, b.name});
        section.rows.push_back({"points", std::to_string(a.items.size()), std::to_string(b.items.size())});
        section.rows.push_back({"held at", "B " + text::ExactText(a.items.front().BPosition) + " deg",
                                "A " + text::ExactText(b.items.front().APosition) + " deg"});
        if (!geometry.judged.diagnosis) return section;
        const diagnosis::Diagnosis& diagnosis = *geometry.judged.diagnosis;
        section.rows.push_back({"arc covered", Fixed(diagnosis.aCircle.arcCovered, 1, "deg"),
                                Fixed(diagnosis.bCircle.arcCovered, 1, "deg")});
        section.rows.push_back(
            {"radius", Fixed(diagnosis.aCircle.radius, 4, "mm"), Fixed(diagnosis.bCircle.radius, 4, "mm")});
        section.rows.push_back({"a point scatters by", Fixed(1000.0 * diagnosis.noise.perSet.aSet, 1, "um"),
                                Fixed(1000.0 * diagnosis.noise.perSet.bSet, 1, "um")});
        const model::Vector3& tip = diagnosis.head.model.tip;
        section.rows.push_back(
            {"stylus tip X, Y, Z",
             text::FixedText(tip.x, 3) + ", " + text::FixedText(tip.y, 3) + ", " + Fixed(tip.z, 3, "mm"), ""});
        return section;
    }

    RecordSection Known() const {
        const auto& sphere = geometry.judged.capture.knownSphere;
        const auto& stylus = geometry.judged.capture.knownStylus;
        return {"Measured otherwise",
                {},
                {{"pole sphere X, Y, Z", sphere ? text::FixedText(sphere->x, 4) + ", " + text::FixedText(sphere->y, 4) +
                                                      ", " + Fixed(sphere->z, 4, "mm")
                                                : "not given"},
                 {"stylus", stylus ? Fixed(*stylus, 3, "mm") : "not given"}}};
    }

    static RecordSection Settings() {
        RecordSection section{"Dimensions in use", {"", "in use", "built in"}, {}};
        const auto values = settings::SettingsInForce();
        for (std::size_t i = 0; i < values.size(); ++i) {
            const HeadSetting& setting = HeadSettings()[i];
            section.rows.push_back(
                {setting.shortName, text::ExactText(values[i]) + " " + setting.unit, text::ExactText(setting.builtIn)});
        }
        return section;
    }

    const RecordedGeometry& geometry;
};

} // namespace

std::vector<record::RecordedFinding> RecordedFindings(const JudgedCapture& judged,
                                                      const diagnosis::CaptureFiles& files) {
    std::vector<record::RecordedFinding> recorded;
    recorded.reserve(judged.findings.size());
    for (const diagnosis::Finding& finding : judged.findings) {
        diagnosis::FindingMessage message = diagnosis::MessageFor(finding, files, judged.Tip());
        recorded.push_back({std::string(NameOf(finding.severity)) + ": " + std::string(NameOf(finding.kind)),
                            std::move(message.sentence), std::move(message.remedy)});
    }
    return recorded;
}

record::Record RecordOf(const RecordedGeometry& geometry) { return Recorder(geometry).Made(); }

} // namespace qmv40::cli

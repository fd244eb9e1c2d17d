#include "tools/cli/GeometryRecord.h"

#include "tools/report/CapturePicture.h"
#include "tools/report/DiagnosisReport.h"
#include "tools/settings/HeadSettings.h"
#include "tools/text/Numbers.h"

#include <ctime>

namespace qmv40::cli {

namespace {

using report::RecordSection;

std::string Fixed(double value, int decimals, const std::string& unit) {
    return text::FixedText(value, decimals) + " " + unit;
}

std::string Listed(const model::Vector3& point, int decimals) {
    return text::FixedText(point.x, decimals) + ", " + text::FixedText(point.y, decimals) + ", " +
           Fixed(point.z, decimals, "mm");
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

    report::Record Made() const {
        report::Record record;
        record.title = "Geometry of head " + (geometry.headNumber.empty() ? "(no number given)" : geometry.headNumber);
        record.verdict = report::VerdictOf(geometry.judged.findings);
        record.meaning = Meaning(record.verdict);
        record.findings = report::FindingsOf(geometry.judged.findings, geometry.files, geometry.judged.Tip());
        record.picture = report::CapturePicture({geometry.files, geometry.judged.findings});
        record.sections = {Occasion(), Geometry(), Capture(), Known(), Settings()};
        return record;
    }

private:
    static std::string Meaning(const std::string& verdict) {
        if (verdict == "good") return "Circles, axes and angles agree.";
        return verdict == "fault" ? "The capture has a fault. Do not use this geometry."
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
        const ComputedHead& head = geometry.judged.head;
        const auto& diagnosis = geometry.judged.diagnosis;
        const auto deviation = [&](double value, const char* unit) { return diagnosis ? Fixed(value, 4, unit) : ""; };
        RecordSection section{"Geometry", {"", "", "standard deviation"}, {}};
        for (std::size_t i = 0; i < 3; ++i) {
            const double known = diagnosis ? diagnosis->axes.headCentre[i].standardDeviation : 0.0;
            section.rows.push_back(
                {std::string("head centre ") + "XYZ"[i], Fixed(head.headCentre[i], 4, "mm"), deviation(known, "mm")});
        }
        const double known = diagnosis ? diagnosis->axes.rotationStandardDeviation : 0.0;
        section.rows.push_back({"turned about Z", Fixed(head.rotationAroundZ, 4, "deg"), deviation(known, "deg")});
        section.rows.push_back({"safe height Z", Fixed(head.safePosition.z, 4, "mm"), ""});
        if (diagnosis) AddAxes(section, diagnosis->axes);
        return section;
    }
    static void AddAxes(RecordSection& section, const diagnosis::fit::HeadAxes& axes) {
        section.rows.push_back({"A axis passes B axis at", Fixed(std::abs(axes.axisOffset.value), 4, "mm"),
                                Fixed(axes.axisOffset.standardDeviation, 4, "mm")});
        section.rows.push_back({"axes out of square by", Fixed(std::abs(axes.squareness.value), 4, "deg"),
                                Fixed(axes.squareness.standardDeviation, 4, "deg")});
        section.rows.push_back({"B axis off the vertical by", Fixed(axes.offVertical.value, 4, "deg"),
                                Fixed(axes.offVertical.standardDeviation, 4, "deg")});
    }

    RecordSection Capture() const {
        const captures::CaptureFile &a = geometry.files.aAxis, &b = geometry.files.bAxis;
        RecordSection section{"Capture",
                              {"", "A set", "B set"},
                              {{"file", a.name, b.name},
                               {"points", std::to_string(a.items.size()), std::to_string(b.items.size())},
                               {"held at", "B " + text::ExactText(a.items.front().BPosition) + " deg",
                                "A " + text::ExactText(b.items.front().APosition) + " deg"}}};
        if (!geometry.judged.diagnosis) return section;
        const diagnosis::Diagnosis& diagnosis = *geometry.judged.diagnosis;
        const auto add = [&](const char* name, double ofASet, double ofBSet, int decimals, const char* unit) {
            section.rows.push_back({name, Fixed(ofASet, decimals, unit), Fixed(ofBSet, decimals, unit)});
        };
        add("arc covered", diagnosis.aCircle.arcCovered, diagnosis.bCircle.arcCovered, 1, "deg");
        add("radius", diagnosis.aCircle.radius, diagnosis.bCircle.radius, 4, "mm");
        add("a point scatters by", 1000.0 * diagnosis.noise.perSet.aSet, 1000.0 * diagnosis.noise.perSet.bSet, 1, "um");
        section.rows.push_back({"stylus tip X, Y, Z", Listed(diagnosis.head.model.tip, 3), ""});
        return section;
    }

    RecordSection Known() const {
        const auto& sphere = geometry.judged.capture.knownSphere;
        const auto& stylus = geometry.judged.capture.knownStylus;
        return {"Measured otherwise",
                {},
                {{"pole sphere X, Y, Z", sphere ? Listed(*sphere, 4) : "not given"},
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

report::Record RecordOf(const RecordedGeometry& geometry) { return Recorder(geometry).Made(); }

} // namespace qmv40::cli

#include "tools/report/DiagnosisReport.h"

#include "tools/text/Finding.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

#include <algorithm>
#include <cmath>

namespace qmv40::report {

namespace {

using diagnosis::Diagnosis;
using diagnosis::Finding;
using diagnosis::PointDiagnosis;
using diagnosis::Severity;
using model::Vector3;
namespace fit = diagnosis::fit;

constexpr int residualPlaces = 6; // residuals and standard deviations: a small one is tenths of a micrometre
constexpr int positionPlaces = 4; // positions and angles

/// Residuals are printed in micrometres.
std::string Micrometres(double millimetres) { return text::FixedText(1000.0 * millimetres, 1); }

std::string OfAxis(const char* figure, std::size_t axis) { return std::string(figure) + "XYZ"[axis]; }

/// Figures with their standard deviations and units.
class EstimateTable {
public:
    EstimateTable()
        : table({{"", text::Table::Align::Left}, {""}, {"std deviation"}, {"", text::Table::Align::Left}}) {}

    void Add(const std::string& figure, double value, double standardDeviation, const std::string& unit) {
        table.AddRow(
            {figure, text::FixedText(value, positionPlaces), text::FixedText(standardDeviation, residualPlaces), unit});
    }
    void Add(const std::string& figure, double value, const std::string& unit, int decimals = positionPlaces) {
        table.AddRow({figure, text::FixedText(value, decimals), "", unit});
    }
    void Print(const text::Console& console) const { table.Print(console); }

private:
    text::Table table;
};

void PrintPrecision(const Diagnosis& diagnosis, const text::Console& console) {
    const fit::HeadAxes& axes = diagnosis.axes;
    EstimateTable table;
    for (std::size_t i = 0; i < 3; ++i) {
        table.Add(OfAxis("head centre ", i), axes.headCentre[i].value, axes.headCentre[i].standardDeviation, "mm");
    }
    const double rotation = diagnosis.head.MountingDegrees() + diagnosis.rotationDifference;
    table.Add("rotation about Z", rotation, axes.rotationStandardDeviation, "deg");
    table.Add("A axis passes B axis at", std::abs(axes.axisOffset.value), axes.axisOffset.standardDeviation, "mm");
    table.Add("axes out of square by", std::abs(axes.squareness.value), axes.squareness.standardDeviation, "deg");
    table.Add("B axis off the vertical by", axes.offVertical.value, axes.offVertical.standardDeviation, "deg");
    console.out << console.Strong("How well they are known") << '\n';
    table.Print(console);
    console.out << "  from " << diagnosis.noise.degreesOfFreedom << " degrees of freedom: a point scatters by ";
    const fit::PointNoise& noise = diagnosis.noise.perSet;
    if (diagnosis.noise.isUneven) {
        console.out << Micrometres(noise.aSet) << " um in the A set, " << Micrometres(noise.bSet)
                    << " um in the B set\n";
    } else {
        console.out << Micrometres(noise.aSet) << " um in each coordinate\n";
    }
}

void PrintSecondOpinion(const Diagnosis& diagnosis, const text::Console& console) {
    const fit::HeadFit& head = diagnosis.head;
    EstimateTable table;
    table.Add("rotation about Z", head.MountingDegrees(), diagnosis.MountingStandardDeviation(), "deg");
    table.Add("component's rotation differs by", diagnosis.rotationDifference, "deg");
    for (std::size_t i = 0; i < 3; ++i) table.Add(OfAxis("pole sphere ", i), head.model.poleSphere[i], "mm");
    for (std::size_t i = 0; i < 3; ++i) table.Add(OfAxis("stylus tip ", i), head.model.tip[i], "mm");
    table.Add("RMS of the residuals", head.Rms(), "mm", residualPlaces);
    console.out << console.Strong("Second opinion: the whole head fitted with the captured angles") << '\n';
    table.Print(console);
    console.out << "  " << head.model.Unknowns() << " unknowns, " << head.degreesOfFreedom << " degrees of freedom";
    if (!head.model.errors.empty()) console.out << "; what is wrong with the capture is among the unknowns";
    console.out << '\n';
}

/// All points of a capture made by hand; of a larger capture, those farthest from their places.
std::vector<std::size_t> PointsToShow(const Diagnosis& diagnosis) {
    constexpr std::size_t most = 100, few = 20;
    std::vector<std::size_t> points = captures::PointRange(0, diagnosis.points.size());
    if (points.size() <= most) return points;
    std::ranges::partial_sort(points, points.begin() + few, std::ranges::greater(),
                              [&](std::size_t i) { return diagnosis.points[i].offPlace; });
    points.resize(few);
    std::ranges::sort(points);
    return points;
}

void PrintPoints(const Diagnosis& diagnosis, const captures::CaptureFiles& files, const text::Console& console) {
    text::Table table({{"point", text::Table::Align::Left},
                       {"A"},
                       {"B"},
                       {"radial"},
                       {"out of plane"},
                       {"off its place"},
                       {"moves centre"},
                       {"turns head"}});
    table.AddRow({"", "deg", "deg", "um", "um", "um", "um", "deg"});
    const std::vector<std::size_t> shown = PointsToShow(diagnosis);
    for (const std::size_t i : shown) {
        const PointDiagnosis& point = diagnosis.points[i];
        const HeadAlignmentDataItem& item = files.ItemOf(i);
        std::vector<std::string> row{std::string(files.IsOfASet(i) ? "A" : "B") + " set, line " +
                                         std::to_string(files.LineOf(i)),
                                     text::ExactText(item.APosition),
                                     text::ExactText(item.BPosition),
                                     Micrometres(point.onCircle.radial),
                                     Micrometres(point.onCircle.outOfPlane),
                                     Micrometres(point.offPlace)};
        if (point.influence) {
            row.push_back(Micrometres(point.influence->centreShift));
            row.push_back(text::FixedText(point.influence->rotationShift, residualPlaces));
        }
        table.AddRow(std::move(row));
    }
    console.out << console.Strong("Points: how far each lies off, and what leaving it out would change") << '\n';
    table.Print(console);
    if (shown.size() == diagnosis.points.size()) return;
    console.out << "  The " << shown.size() << " points farthest off their places, of " << diagnosis.points.size()
                << ".\n";
}

std::string Red(const std::string& text, const text::Console& console) {
    return console.colour ? "\x1b[1;31m" + text + "\x1b[0m" : text;
}

text::Json VectorJson(const Vector3& v) { return {{"X", v.x}, {"Y", v.y}, {"Z", v.z}}; }

text::Json EstimateJson(const fit::Estimate& estimate) {
    return {{"value", estimate.value}, {"standardDeviation", estimate.standardDeviation}};
}

text::Json PointPlaceJson(std::size_t point, const captures::CaptureFiles& files) {
    return {
        {"axis", files.IsOfASet(point) ? "A" : "B"}, {"file", files.FileOf(point).name}, {"line", files.LineOf(point)}};
}

text::Json CapturedPointJson(const PointDiagnosis& point, const HeadAlignmentDataItem& item, std::size_t line) {
    text::Json document{{"line", line},
                        {"APosition", item.APosition},
                        {"BPosition", item.BPosition},
                        {"radial", point.onCircle.radial},
                        {"outOfPlane", point.onCircle.outOfPlane},
                        {"offPlace", point.offPlace},
                        {"leftOut", nullptr}};
    if (point.influence) {
        document["leftOut"] = {{"centreShift", point.influence->centreShift},
                               {"rotationShift", point.influence->rotationShift},
                               {"pValue", point.influence->pValue}};
    }
    return document;
}

text::Json SetJson(const fit::AxisCircle& circle, double noise, const Diagnosis& diagnosis,
                   const captures::CaptureFiles& files, std::size_t first) {
    text::Json points = text::Json::Array();
    // More points would make a document too large to be useful.
    constexpr std::size_t most = 10000;
    const std::size_t listed = std::min(circle.points.size(), most);
    for (std::size_t i = first; i < first + listed; ++i) {
        points.PushBack(CapturedPointJson(diagnosis.points[i], files.ItemOf(i), files.LineOf(i)));
    }
    return {{"file", files.FileOf(first).name},
            {"arcCovered", circle.arcCovered},
            {"degreesOfFreedom", circle.DegreesOfFreedom()},
            {"rms", circle.Rms()},
            {"noise", noise},
            {"points", std::move(points)}};
}

text::Json SecondOpinionJson(const Diagnosis& diagnosis) {
    const fit::HeadFit& head = diagnosis.head;
    return {{"poleSphere", VectorJson(head.model.poleSphere)},
            {"mountingAngle", EstimateJson({head.MountingDegrees(), diagnosis.MountingStandardDeviation()})},
            {"stylusTip", VectorJson(head.model.tip)},
            {"rotationDifference", diagnosis.rotationDifference},
            {"rms", head.Rms()},
            {"unknowns", head.model.Unknowns()},
            {"degreesOfFreedom", head.degreesOfFreedom}};
}

} // namespace

std::string VerdictOf(const std::vector<Finding>& findings) {
    for (const Severity severity : {Severity::Fault, Severity::Warning}) {
        if (Has(findings, severity)) return std::string(NameOf(severity));
    }
    return "good";
}

void PrintDiagnosis(const Diagnosis& diagnosis, const captures::CaptureFiles& files, const text::Console& console) {
    PrintPrecision(diagnosis, console);
    console.out << '\n';
    PrintSecondOpinion(diagnosis, console);
    console.out << '\n';
    PrintPoints(diagnosis, files, console);
}

void PrintVerdict(const std::vector<Finding>& findings, const captures::CaptureFiles& files, const Vector3& tip,
                  const text::Console& console) {
    const std::string verdict = VerdictOf(findings);
    console.out << console.Strong("Verdict: ") << (verdict == "fault" ? Red(verdict, console) : console.Strong(verdict))
                << '\n';
    if (verdict == "good") console.out << "  circles, axes and angles agree\n";
    text::PrintFindings(FindingsOf(findings, files, tip), console.out, console.colour);
}

std::vector<text::Finding> FindingsOf(const std::vector<Finding>& findings, const captures::CaptureFiles& files,
                                      const Vector3& tip) {
    std::vector<text::Finding> shared;
    for (const Finding& finding : findings) {
        FindingMessage message = MessageFor(finding, files, tip);
        text::Json points = text::Json::Array();
        for (const std::size_t point : finding.points) points.PushBack(PointPlaceJson(point, files));
        text::Json details{{"points", std::move(points)}};
        if (finding.captureAt) details["captureAAxisAtB"] = *finding.captureAt;
        shared.push_back({.name = std::string(NameOf(finding.kind)),
                          .severity = finding.severity,
                          .sentence = std::move(message.sentence),
                          .remedy = std::move(message.remedy),
                          .place = "",
                          .amount = "",
                          .details = std::move(details)});
    }
    return shared;
}

text::Json FindingsJson(const std::vector<Finding>& findings, const captures::CaptureFiles& files, const Vector3& tip) {
    const std::vector<text::Finding> told = FindingsOf(findings, files, tip);
    return {{"verdict", VerdictOf(findings)}, {"findings", text::FindingsJson(told)}};
}

text::Json DiagnosisJson(const Diagnosis& diagnosis, const captures::CaptureFiles& files) {
    const fit::HeadAxes& axes = diagnosis.axes;
    text::Json document = FindingsJson(diagnosis.findings, files, diagnosis.head.model.tip);
    document["standardDeviations"] = {{"X", axes.headCentre[0].standardDeviation},
                                      {"Y", axes.headCentre[1].standardDeviation},
                                      {"Z", axes.headCentre[2].standardDeviation},
                                      {"rotationAroundZ", axes.rotationStandardDeviation}};
    document["axes"] = {{"axisOffset", EstimateJson(axes.axisOffset)},
                        {"squareness", EstimateJson(axes.squareness)},
                        {"offVerticalTowardsX", EstimateJson(axes.offVerticalTowardsX)},
                        {"offVerticalTowardsY", EstimateJson(axes.offVerticalTowardsY)}};
    document["secondOpinion"] = SecondOpinionJson(diagnosis);
    const fit::PointNoise& noise = diagnosis.noise.perSet;
    document["aAxis"] = SetJson(diagnosis.aCircle, noise.aSet, diagnosis, files, 0);
    document["bAxis"] = SetJson(diagnosis.bCircle, noise.bSet, diagnosis, files, diagnosis.aCircle.points.size());
    return document;
}

} // namespace qmv40::report

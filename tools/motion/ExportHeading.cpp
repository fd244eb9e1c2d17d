#include "tools/motion/ExportHeading.h"

#include "tools/plans/HeadAnglesText.h"
#include "tools/text/Numbers.h"

namespace qmv40::motion {

namespace {

constexpr int lengthDecimals = 4;

std::string PlanLine(std::size_t number, const Origin& origin) {
    const plans::Plan& plan = origin.plans[number];
    return "Plan " + std::to_string(number + 1) + " of " + std::to_string(origin.plans.size()) + ": from " +
           plans::HeadAnglesText(plan.from) + " to " + plans::HeadAnglesText(plan.to) + " deg";
}

std::string SourcesLine(const Origin& origin) {
    const model::Vector3& pole = origin.poleSphere;
    return "Geometry " + origin.geometry + ": pole sphere at X " + text::FixedText(pole.x, lengthDecimals) + " Y " +
           text::FixedText(pole.y, lengthDecimals) + " Z " + text::FixedText(pole.z, lengthDecimals) + "; settings " +
           (origin.settings.empty() ? "of this machine" : origin.settings);
}

std::string PathLine(std::span<const Step> program, double feed) {
    const double length = LengthOf(program);
    return "Path " + text::FixedText(length, 1) + " mm; at " + text::ExactText(feed) + " mm/min it takes at least " +
           text::FixedText(length / feed, 1) + " min";
}

std::string BeginLine(std::span<const Step> program, const Origin& origin) {
    const std::string height = text::FixedText(origin.safeHeight + origin.lift, lengthDecimals);
    if (!program.empty() && program.front().move) {
        return "Begins where plan 1 begins: bring the machine there by a path of your own, from above";
    }
    return "Begins above the start of plan 1 at Z " + height + ": start it from a free place at that height or higher";
}

} // namespace

std::vector<std::string> HeadingOf(std::span<const Step> program, const Origin& origin, const ExportOptions& options) {
    std::vector<std::string> lines;
    lines.reserve(origin.plans.size());
    for (std::size_t i = 0; i < origin.plans.size(); ++i) lines.push_back(PlanLine(i, origin));
    lines.push_back(SourcesLine(origin));
    lines.emplace_back("Positions are the machine's own, mm, without a stylus tip in force: where the head centre is");
    lines.push_back("Chords leave their arcs by at most " + text::ExactText(options.chord) + " mm");
    lines.push_back(PathLine(program, options.feed));
    lines.push_back(BeginLine(program, origin));
    if (origin.lift != 0.0) {
        lines.push_back("REHEARSAL: everything is " + text::ExactText(origin.lift) +
                        " mm higher, and nothing is touched");
    }
    lines.emplace_back("Rehearse in the air (--lift) before the first run and after every change of head, sphere,");
    lines.emplace_back("geometry file, settings or controller");
    return lines;
}

} // namespace qmv40::motion

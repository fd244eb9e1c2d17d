#include "tools/motion/Export.h"
#include "tools/motion/Polyline.h"
#include "tools/text/Numbers.h"

namespace qmv40::motion {

std::string NameOf(const Step& step) {
    const std::string plan = "plan " + std::to_string(step.plan);
    if (!step.move) return "way to " + plan;
    return plan + ", move " + std::to_string(NumberOf(*step.move)) + " " + NameOf(*step.move);
}

std::string CoordinateText(double millimetres) {
    constexpr int decimals = 7;
    return text::FixedText(millimetres, decimals);
}

std::string PointsHeading(const ExportOptions& options) {
    std::string text = std::string("# ") + exportMark + "points\n";
    for (const std::string& line : options.heading) text += "# " + line + "\n";
    return text;
}

std::string PointsText(std::span<const Step> program, const ExportOptions& options) {
    std::string text = "Plan,Move,Name,X,Y,Z\n";
    for (const Step& step : program) {
        const std::string move = step.move ? std::to_string(NumberOf(*step.move)) + "," + NameOf(*step.move) : "0,Way";
        for (const model::Vector3& end : ChordEnds(step.path, options.chord)) {
            text += std::to_string(step.plan) + "," + move + "," + text::ExactText(end.x) + "," +
                    text::ExactText(end.y) + "," + text::ExactText(end.z) + "\n";
        }
    }
    return text;
}

} // namespace qmv40::motion

#include "tools/motion/Ways.h"

#include "tools/text/Numbers.h"

namespace qmv40::motion {

namespace {

constexpr int decimals = 4;

std::string PointText(const model::Vector3& point) {
    return "X " + text::FixedText(point.x, decimals) + "  Y " + text::FixedText(point.y, decimals) + "  Z " +
           text::FixedText(point.z, decimals);
}

} // namespace

void PrintWays(std::span<const Step> program, const text::Console& console) {
    console.out << '\n' << console.Strong("The way between the plans, at the safe height (mm)") << '\n';
    const char* direction = "up to     ";
    for (const Step& step : program) {
        if (step.move) continue;
        const bool isUp = direction[0] == 'u';
        if (isUp) console.out << "  to plan " << step.plan << '\n';
        console.out << "    " << direction << PointText(step.path.End()) << '\n';
        if (!isUp) console.out << "    down to its first move\n";
        direction = isUp ? "across to " : "up to     ";
    }
    console.out << "The whole tour is " << text::FixedText(LengthOf(program), 1) << " mm long.\n";
}

} // namespace qmv40::motion

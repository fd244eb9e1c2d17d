#include "tools/check/Assumptions.h"

#include "tools/text/Finding.h"
#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::check {

namespace {

std::string Millimetres(double length) { return text::ExactText(length) + " mm"; }

/// A part whose size the user did not give is compared with fixtures only, and not with the pole sphere: see PartSizes.
std::string Given(const std::optional<double>& size, double assumed) {
    return size ? Millimetres(*size) : Millimetres(assumed) + " (fixtures only)";
}

std::string TravelText(const std::array<TravelLimits, 3>& travel) {
    constexpr std::array names{"X ", "Y ", "Z "};
    std::string text;
    for (std::size_t i = 0; i < travel.size(); ++i) {
        if (!std::isfinite(travel[i].smallest)) continue;
        text += (text.empty() ? "" : ", ") + std::string(names[i]) + text::ExactText(travel[i].smallest) + " to " +
                Millimetres(travel[i].largest);
    }
    return text.empty() ? "not given: not checked" : text;
}

std::string StylusText(const std::optional<Stylus>& stylus) {
    if (!stylus) return "not given: not checked";
    return Millimetres(stylus->length) + " long, diameter " + Millimetres(stylus->diameter) + ", tip " +
           Millimetres(stylus->tipDiameter);
}

text::Json TravelJson(const std::array<TravelLimits, 3>& travel) {
    text::Json document = text::Json::Object();
    constexpr std::array axes{"X", "Y", "Z"};
    // An axis without a limit has an infinite end, which is null in a document.
    for (std::size_t i = 0; i < travel.size(); ++i) document[axes[i]] = {travel[i].smallest, travel[i].largest};
    return document;
}

text::Json ObstaclesJson(const std::vector<obstacles::Obstacle>& obstacles) {
    text::Json list = text::Json::Array();
    for (const obstacles::Obstacle& obstacle : obstacles) {
        list.PushBack({{"name", obstacle.name}, {"shape", obstacle.description}});
    }
    return list;
}

} // namespace

text::Json StylusJson(const std::optional<Stylus>& stylus) {
    if (!stylus) return nullptr;
    return {{"length", stylus->length}, {"diameter", stylus->diameter}, {"tipDiameter", stylus->tipDiameter}};
}

std::vector<AssumptionLine> AssumptionLines(const CheckOptions& options) {
    const Scene& scene = options.scene;
    const PartSizes& parts = scene.parts;
    std::vector<AssumptionLine> lines{
        {"required clearance", Millimetres(options.requiredClearance), "--clearance"},
        {"pole sphere", "radius " + Millimetres(options.sizes.poleSphereRadius), "--sphere-radius"},
        {"its stem", "straight down, diameter " + Millimetres(scene.stemDiameter), "--stem-diameter"},
        {"levers",
         "balls of radius " + Millimetres(options.sizes.leverBallRadius) + ", arms of diameter " +
             Millimetres(parts.leverDiameter),
         "--ball-radius, --lever-diameter"},
        {"body",
         "upright rod on the head centre, diameter " + Given(parts.bodyDiameter, assumedBodyDiameter) + ", height " +
             Millimetres(parts.bodyLength),
         "--body-diameter, --body-length"},
        {"joint", "ball about the head centre, diameter " + Given(parts.jointDiameter, assumedJointDiameter),
         "--joint-diameter"},
        {"drive cup", "ball of diameter " + Millimetres(parts.cupDiameter), "--cup-diameter"},
        {"stylus", StylusText(parts.stylus), "--stylus, --stylus-diameter, --tip-diameter"},
        {"table", scene.table ? "at Z " + Millimetres(*scene.table) : "not given: not checked", "--table"},
        {"travel", TravelText(options.travel), "--x-travel, --y-travel, --z-travel"}};
    if (scene.obstacles.empty()) lines.push_back({"obstacles", "none given", "--obstacles"});
    for (const obstacles::Obstacle& obstacle : scene.obstacles) {
        lines.push_back({"obstacle", obstacle.name + ": " + obstacle.description, "--obstacles"});
    }
    return lines;
}

void PrintAssumptions(const CheckOptions& options, const text::Console& console) {
    console.out << '\n' << console.Strong("Assumed") << '\n';
    for (const AssumptionLine& line : AssumptionLines(options)) {
        constexpr std::size_t width = 20; // of what is assumed, with the blanks after it
        std::string what = "  " + line.what;
        what.resize(2 + width, ' ');
        console.out << text::Wrapped(what, line.value + " (" + line.option + ")");
    }
}

text::Json AssumptionsJson(const CheckOptions& options) {
    const Scene& scene = options.scene;
    const PartSizes& parts = scene.parts;
    return {{"clearance", options.requiredClearance},
            {"poleSphereRadius", options.sizes.poleSphereRadius},
            {"stemDiameter", scene.stemDiameter},
            {"leverBallRadius", options.sizes.leverBallRadius},
            {"leverDiameter", parts.leverDiameter},
            {"bodyDiameter", parts.bodyDiameter.value_or(assumedBodyDiameter)},
            {"bodyLength", parts.bodyLength},
            {"jointDiameter", parts.jointDiameter.value_or(assumedJointDiameter)},
            {"cupDiameter", parts.cupDiameter},
            {"stylus", StylusJson(parts.stylus)},
            {"table", scene.table},
            {"travel", TravelJson(options.travel)},
            {"obstacles", ObstaclesJson(scene.obstacles)}};
}

} // namespace qmv40::check

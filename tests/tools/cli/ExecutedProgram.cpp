#include "tests/tools/cli/ExecutedProgram.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

using namespace qmv40;

namespace {

using model::Vector3;

/// mm. Programs are printed with seven decimals; points of arcs are computed from them.
constexpr double endPrecision = 1e-6;

Vector3 VectorAt(const Json& object, const char* x, const char* y, const char* z) {
    return {object[x].get<double>(), object[y].get<double>(), object[z].get<double>()};
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> FieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
    return fields;
}

/// Reads the numbers in "(plan 2, move 3 UnLock)" or "(way to plan 2)". Returns false for every other comment.
bool ReadPlace(const std::string& comment, std::pair<int, int>& place) {
    int plan = 0;
    int move = 0;
    if (std::sscanf(comment.c_str(), "(plan %d, move %d", &plan, &move) == 2) {
        place = {plan, move};
    } else if (std::sscanf(comment.c_str(), "(way to plan %d)", &plan) == 1) {
        place = {plan, 0};
    } else {
        return false;
    }
    return true;
}

/// The words of one line of G-code in their order, without comments.
std::vector<std::pair<char, double>> WordsOf(const std::string& line) {
    std::string code = line;
    for (auto open = code.find('('); open != std::string::npos; open = code.find('(')) {
        code.erase(open, code.find(')', open) - open + 1);
    }
    std::vector<std::pair<char, double>> words;
    std::istringstream stream(code);
    stream.imbue(std::locale::classic());
    for (std::string word; stream >> word;) words.emplace_back(word.at(0), std::stod(word.substr(1)));
    return words;
}

/// Executes G-code line by line and collects the parts of each move.
class Controller {
public:
    void Run(const std::string& line) {
        std::pair<int, int> next;
        if (ReadPlace(line, next)) place = next;
        centre = {};
        bool moves = false;
        for (const auto& [letter, value] : WordsOf(line)) moves |= Take(letter, value);
        if (moves) Move();
    }
    Program Result() && { return std::move(program); }

private:
    /// Executes one word. Returns true for a coordinate: then the line moves the machine.
    bool Take(char letter, double value) {
        switch (letter) {
        case 'G':
            TakeG(value);
            return false;
        case 'F':
            return false;
        case 'M':
            return false;
        case 'X':
            target.x = value;
            return true;
        case 'Y':
            target.y = value;
            return true;
        case 'Z':
            target.z = value;
            return true;
        case 'I':
            centre.x = value;
            return true;
        case 'J':
            centre.y = value;
            return true;
        case 'K':
            centre.z = value;
            return true;
        default:
            throw std::runtime_error(std::string("an unknown word: ") + letter);
        }
    }

    void TakeG(double value) {
        if (value == 1 || value == 2 || value == 3)
            motion = static_cast<int>(value);
        else if (value == 17)
            planeNormal = {0.0, 0.0, 1.0};
        else if (value == 18)
            planeNormal = {0.0, 1.0, 0.0};
        else if (value == 19)
            planeNormal = {1.0, 0.0, 0.0};
        else {
            constexpr double known[] = {21, 40, 49, 53, 54, 61, 80, 90, 91.1, 94};
            if (std::ranges::count(known, value) == 0) throw std::runtime_error("unknown G" + std::to_string(value));
        }
    }

    void Move() {
        Part part{target};
        if (motion != 1) {
            part.isArc = true;
            part.centre = position + centre;
            part.clockwiseAxis = motion == 2 ? planeNormal : -planeNormal;
        }
        program[place].push_back(part);
        position = target;
    }

    Program program;
    std::pair<int, int> place{0, 0};
    int motion = 0;
    Vector3 planeNormal{0.0, 0.0, 1.0};
    Vector3 position;
    Vector3 target;
    Vector3 centre;
};

/// Executes the canonical moves that LinuxCNC's interpreter printed.
class CanonicalMachine {
public:
    void Run(const std::string& line) {
        std::istringstream words(line);
        words.imbue(std::locale::classic());
        std::string call;
        words >> call;
        if (call == "COMMENT") {
            std::pair<int, int> next;
            if (ReadPlace("(" + line.substr(line.find('"') + 1), next)) place = next;
        } else if (call == "SELECT_PLANE") {
            words >> plane;
        } else if (call == "STRAIGHT_FEED") {
            Vector3 end;
            words >> end.x >> end.y >> end.z;
            Add({end});
        } else if (call == "ARC_FEED") {
            AddArc(words);
        } else {
            throw std::runtime_error("an unknown call: " + call);
        }
    }
    Program Result() && { return std::move(program); }

private:
    /// The numbers belong to the plane's first and second axis. In the plane XZ these are Z and X, because the plane is
    /// seen from +Y.
    void AddArc(std::istream& words) {
        double firstEnd = 0;
        double secondEnd = 0;
        double firstCentre = 0;
        double secondCentre = 0;
        double turns = 0;
        double height = 0;
        words >> firstEnd >> secondEnd >> firstCentre >> secondCentre >> turns >> height;
        const auto placed = [&](double first, double second) -> Vector3 {
            if (plane == "CANON_PLANE_XY") return {first, second, height};
            if (plane == "CANON_PLANE_XZ") return {second, height, first};
            return {height, first, second};
        };
        const Vector3 planeNormal = plane == "CANON_PLANE_XY"   ? Vector3{0.0, 0.0, 1.0}
                                    : plane == "CANON_PLANE_XZ" ? Vector3{0.0, 1.0, 0.0}
                                                                : Vector3{1.0, 0.0, 0.0};
        Add({placed(firstEnd, secondEnd), true, placed(firstCentre, secondCentre),
             turns < 0.0 ? planeNormal : -planeNormal});
    }
    void Add(const Part& part) { program[place].push_back(part); }

    Program program;
    std::pair<int, int> place{0, 0};
    std::string plane = "CANON_PLANE_XY";
};

/// The angle from one direction to another, positive clockwise as seen from the tip of the axis; -180 to 180 degrees.
double ClockwiseDegrees(const Vector3& from, const Vector3& to, const Vector3& axis) {
    return model::ToDegrees(std::atan2(-model::Dot(model::Cross(from, to), axis), model::Dot(from, to)));
}

/// Points along the parts. On arcs they are so close that the angle between two of them is below 180 degrees.
std::vector<Vector3> PointsAlong(const Vector3& start, const std::vector<Part>& parts) {
    std::vector<Vector3> points{start};
    for (const Part& part : parts) {
        if (part.isArc) {
            constexpr int steps = 16;
            const Vector3 radius = points.back() - part.centre;
            double turn = ClockwiseDegrees(radius, part.end - part.centre, part.clockwiseAxis);
            if (turn <= 0.0) turn += 360.0;
            for (int i = 1; i < steps; ++i) {
                const double angle = -model::ToRadians(turn * i / steps);
                const Vector3 inPlane = model::Perpendicular(radius, part.clockwiseAxis);
                points.push_back(part.centre + (radius - inPlane) + std::cos(angle) * inPlane +
                                 std::sin(angle) * model::Cross(part.clockwiseAxis, inPlane));
            }
        }
        points.push_back(part.end);
    }
    return points;
}

std::string ArcDifference(const std::vector<Part>& parts, const Json& move, double chord, const Vector3& lift) {
    const Json& record = move["record"];
    const Vector3 origin = VectorAt(record, "XOrigin", "YOrigin", "ZOrigin") + lift;
    const Vector3 axis = model::Unit(VectorAt(record, "iRotationVector", "jRotationVector", "kRotationVector"));
    const Vector3 start = VectorAt(move["start"], "X", "Y", "Z") + lift;
    const double radius = model::Length(model::Perpendicular(start - origin, axis));
    const double height = model::Dot(start - origin, axis);
    const std::vector<Vector3> points = PointsAlong(start, parts);
    double turned = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Vector3 fromAxis = model::Perpendicular(points[i] - origin, axis);
        if (std::abs(model::Length(fromAxis) - radius) > endPrecision) return "a point is off the arc";
        if (std::abs(model::Dot(points[i] - origin, axis) - height) > endPrecision)
            return "a point is out of the plane of the arc";
        if (i == 0) continue;
        const double step = ClockwiseDegrees(model::Perpendicular(points[i - 1] - origin, axis), fromAxis, axis);
        if (step * record["RotationAngle"].get<double>() < -endPrecision) return "turns the wrong way";
        const double sagitta = radius * (1.0 - std::cos(model::ToRadians(step) / 2.0));
        if (!parts.front().isArc && sagitta > chord + endPrecision)
            return "a chord leaves the arc by " + std::to_string(sagitta);
        turned += step;
    }
    constexpr double anglePrecision = 1e-5; // degrees; 1e-6 mm at 6 mm from the axis
    const double off = turned - record["RotationAngle"].get<double>();
    return std::abs(off) <= anglePrecision ? "" : "turns " + std::to_string(off) + " degrees too far";
}

std::string MoveDifference(const std::vector<Part>& parts, const Json& move, double chord, const Vector3& lift) {
    if (parts.empty()) return "is missing";
    const Vector3 end = VectorAt(move["end"], "X", "Y", "Z") + lift;
    if (model::Distance(end, parts.back().end) > endPrecision) return "ends elsewhere";
    if (move["kind"] == "arc") return ArcDifference(parts, move, chord, lift);
    return parts.size() == 1 && !parts.front().isArc ? "" : "is not one straight line";
}

} // namespace

Program ReadPoints(const std::string& text) {
    Program program;
    const std::vector<std::string> lines = LinesOf(text);
    if (lines.at(0) != "Plan,Move,Name,X,Y,Z") throw std::runtime_error("another header: " + lines[0]);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::vector<std::string> fields = FieldsOf(lines[i]);
        program[{std::stoi(fields.at(0)), std::stoi(fields.at(1))}].push_back(
            {{std::stod(fields.at(3)), std::stod(fields.at(4)), std::stod(fields.at(5))}});
    }
    return program;
}

Program ReadGcode(const std::string& text) {
    Controller controller;
    for (const std::string& line : LinesOf(text)) controller.Run(line);
    return std::move(controller).Result();
}

Program ReadCanonicalMoves(const std::string& text) {
    CanonicalMachine machine;
    for (const std::string& line : LinesOf(text)) machine.Run(line);
    return std::move(machine).Result();
}

std::string DifferenceFromPlans(const Program& program, const Json& plans, double chord, double lifted) {
    const Vector3 lift{0.0, 0.0, lifted};
    int plan = 0;
    for (const Json& each : plans) {
        ++plan;
        for (const Json& move : each["moves"]) {
            const auto parts = program.find({plan, move["number"].get<int>()});
            const std::string difference =
                parts == program.end() ? "is missing" : MoveDifference(parts->second, move, chord, lift);
            if (!difference.empty()) {
                return "plan " + std::to_string(plan) + " " + move["name"].get<std::string>() + " " + difference;
            }
        }
    }
    return {};
}

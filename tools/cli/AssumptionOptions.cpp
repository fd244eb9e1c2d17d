#include "tools/cli/AssumptionOptions.h"

#include "tools/check/obstacles/ObstacleFile.h"
#include "tools/cli/Options.h"
#include "tools/text/Failures.h"
#include "tools/text/Numbers.h"

namespace qmv40::cli {

namespace {

template <typename Length>
Option AddLengthOption(Command& command, const char* name, Length& length, const char* description) {
    const auto parse = [](const std::string& text) {
        const text::ParsedNumber number = text::ParseNumber(text);
        return number.problem == nullptr && number.value >= 0.0 ? std::optional(number.value) : std::nullopt;
    };
    return command.AddParsed(name, "MM", description, parse, "is not a length of 0 mm or more", length);
}

void AddTravelOption(Command& command, const char* name, check::TravelLimits& limits) {
    const auto parse = [](const std::string& text) -> std::optional<check::TravelLimits> {
        const auto ends = text::ParseNumberPair(text);
        if (!ends || ends->first > ends->second) return std::nullopt;
        return check::TravelLimits{ends->first, ends->second};
    };
    command.AddParsed(name, "MIN,MAX",
                      "The smallest and the largest coordinate of the machine, mm. No limit unless given", parse,
                      "is not a smaller and a larger number", limits);
}

void AddHeadSizes(Command& command, check::PartSizes& sizes) {
    AddLengthOption(command, "--body-diameter", sizes.bodyDiameter,
                    "Diameter of the head's body, a rod with round ends that stands upright on the head centre. 40 mm "
                    "unless given");
    AddLengthOption(command, "--body-length", sizes.bodyLength,
                    "How far the body reaches above the head centre. 150 mm unless given");
    AddLengthOption(command, "--joint-diameter", sizes.jointDiameter,
                    "Diameter of a ball about the head centre that holds swivel and tilting part. 36 mm unless given, "
                    "and then not for the pole sphere");
    AddLengthOption(command, "--cup-diameter", sizes.cupDiameter, "Diameter of the drive cup. 14 mm unless given");
    AddLengthOption(command, "--lever-diameter", sizes.leverDiameter, "Diameter of a lever's arm. 5 mm unless given");
}

void AddStylus(Command& command, AssumptionOptions& assumptions) {
    AddPositiveLengthOption(command, "--stylus", "MM",
                            "Length of the stylus, head centre to tip centre. Without it no stylus is checked",
                            assumptions.stylusLength);
    AddLengthOption(command, "--stylus-diameter", assumptions.stylus.diameter,
                    "Diameter of its stem. 4 mm unless given")
        .Need("--stylus");
    AddLengthOption(command, "--tip-diameter", assumptions.stylus.tipDiameter, "Diameter of its tip. 5 mm unless given")
        .Need("--stylus");
}

void AddSurroundings(Command& command, AssumptionOptions& assumptions) {
    AddLengthOption(command, "--stem-diameter", assumptions.options.scene.stemDiameter,
                    "Diameter of the pole sphere's stem, which goes straight down. 6 mm unless given");
    AddNumberOption(command, "--table", "Z", "Z of the table's surface, mm. Without it no table is checked",
                    assumptions.options.scene.table);
    command.AddTexts("--obstacles", assumptions.obstacleFiles, "FILE",
                     "Obstacles: an STL mesh in machine coordinates, or a JSON document of boxes, cylinders "
                     "and meshes (docs/qmv40.md)");
}

} // namespace

check::CheckOptions AssumptionOptions::Read() const {
    check::CheckOptions read = options;
    if (stylusLength) {
        read.scene.parts.stylus = stylus;
        read.scene.parts.stylus->length = *stylusLength;
    }
    for (const std::string& file : obstacleFiles) {
        for (check::obstacles::Obstacle& obstacle : check::obstacles::ReadObstacles(file)) {
            read.scene.obstacles.push_back(std::move(obstacle));
        }
    }
    return read;
}

void AddAssumptionOptions(Command& command, AssumptionOptions& assumptions) {
    check::CheckOptions& options = assumptions.options;
    AddLengthOption(command, "--sphere-radius", options.sizes.poleSphereRadius,
                    "Radius of the pole sphere. 5 mm unless given: half of the 10 mm from which the peg is approached");
    AddLengthOption(command, "--ball-radius", options.sizes.leverBallRadius,
                    "Radius of a lever's ball. 2.5 mm unless given: half of the 5 mm from which it is approached");
    AddLengthOption(command, "--clearance", options.requiredClearance,
                    "Clearance that every move must have. 0 unless given");
    AddHeadSizes(command, options.scene.parts);
    AddStylus(command, assumptions);
    AddSurroundings(command, assumptions);
    AddTravelOption(command, "--x-travel", options.travel[0]);
    AddTravelOption(command, "--y-travel", options.travel[1]);
    AddTravelOption(command, "--z-travel", options.travel[2]);
}

} // namespace qmv40::cli

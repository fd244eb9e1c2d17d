#include "tools/cli/Allowances.h"

#include "tools/text/Numbers.h"

namespace qmv40::cli {

namespace {

void AddLengthOption(Command& command, const char* name, double& length, const char* description) {
    command.AddValue(name, "MM", description, [&length](const std::string& value) -> std::string {
        const text::ParsedNumber number = text::ParseNumber(value);
        if (number.problem != nullptr || number.value < 0.0) return "'" + value + "' is not a length of 0 mm or more";
        length = number.value;
        return "";
    });
}

void AddTravelOption(Command& command, const char* name, check::TravelLimits& limits) {
    command.AddValue(name, "MIN,MAX", "Between which coordinates the machine can move, mm; without it any",
                     [&limits](const std::string& value) -> std::string {
                         const auto ends = text::ParseNumberPair(value);
                         if (!ends || ends->first > ends->second) {
                             return "'" + value + "' is not a smaller and a larger number";
                         }
                         limits = {ends->first, ends->second};
                         return "";
                     });
}

} // namespace

void AddAllowances(Command& command, check::CheckOptions& options) {
    AddLengthOption(command, "--sphere-radius", options.sizes.poleSphereRadius,
                    "Radius of the pole sphere. 5 mm unless given: half of the 10 mm from which the peg is approached");
    AddLengthOption(command, "--ball-radius", options.sizes.leverBallRadius,
                    "Radius of a lever's ball. 2.5 mm unless given: half of the 5 mm from which it is approached");
    AddLengthOption(command, "--clearance", options.smallestRoom, "Room that every move has to leave. 0 unless given");
    AddTravelOption(command, "--x-travel", options.travel[0]);
    AddTravelOption(command, "--y-travel", options.travel[1]);
    AddTravelOption(command, "--z-travel", options.travel[2]);
}

} // namespace qmv40::cli

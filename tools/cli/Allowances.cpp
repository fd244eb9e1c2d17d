#include "cli/Allowances.h"

#include "cli/Numbers.h"

namespace {

void AddLengthOption(CLI::App& command, const char* name, double& length, const std::string& meaning) {
    command
        .add_option_function<std::string>(
            name,
            [name, &length](const std::string& text) {
                const ParsedNumber number = ParseNumber(text);
                if (number.problem != nullptr || number.value < 0.0) {
                    throw CLI::ValidationError(name, "'" + text + "' is not a length of 0 mm or more");
                }
                length = number.value;
            },
            meaning)
        ->type_name("MM");
}

void AddTravelOption(CLI::App& command, const char* name, check::TravelLimits& limits) {
    command
        .add_option_function<std::string>(
            name,
            [name, &limits](const std::string& text) {
                const auto ends = ParseNumberPair(text);
                if (!ends || ends->first > ends->second) {
                    throw CLI::ValidationError(name, "'" + text + "' is not a smaller and a larger number");
                }
                limits = {ends->first, ends->second};
            },
            "Between which coordinates the machine can move, mm; without it any")
        ->type_name("MIN,MAX");
}

} // namespace

void AddAllowances(CLI::App& command, check::CheckOptions& options) {
    AddLengthOption(command, "--sphere-radius", options.sizes.poleSphereRadius,
                    "Radius of the pole sphere. 5 mm unless given: half of the 10 mm from which the peg is approached");
    AddLengthOption(command, "--ball-radius", options.sizes.leverBallRadius,
                    "Radius of a lever's ball. 2.5 mm unless given: half of the 5 mm from which it is approached");
    AddLengthOption(command, "--clearance", options.smallestRoom, "Room that every move has to leave. 0 unless given");
    AddTravelOption(command, "--x-travel", options.travel[0]);
    AddTravelOption(command, "--y-travel", options.travel[1]);
    AddTravelOption(command, "--z-travel", options.travel[2]);
}

#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/model/HeadModel.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/settings/GeometryFile.h"
#include "tools/settings/SettingsOverride.h"
#include "tools/text/Console.h"
#include "tools/text/Csv.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace qmv40::cli {

/// Options that nearly every command has.
struct CommonOptions {
    std::string settings; ///< file name; empty: the machine's own settings
    bool json = false;
};

/// The geometry file that a command plans from.
struct GeometryOption {
    std::string file;
    bool force = false; ///< plan also from a file in which an entry is not a number
};

void AddJsonOption(Command& command, bool& json);
/// --json and --settings.
void AddCommonOptions(Command& command, CommonOptions& options);
/// --geometry, which is required, and --force.
void AddGeometryOption(Command& command, GeometryOption& option);
/// --tip, the offset of the stylus tip from the head's centre. Required.
void AddTipOption(Command& command, model::Vector3& tip);
Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets);
/// --units.
void AddUnits(Command& command, text::LengthUnit& unit, const char* description);

std::optional<model::Vector3> ParsePoint(const std::string& text);
/// What is wrong with a number that must be at least `least`; empty when nothing is.
std::string ReadNumber(const std::string& text, double least, double& number);
/// Empty unless the number is a length above 0.
std::optional<double> ParsePositiveLength(const std::string& text);

// The options below write their value to the last reference: a variable of the value's type (HeadAngles, Vector3 or
// double), or a std::optional of it. `unit`: the word that the help shows in the place of the value.

/// A position of the head.
template <typename Angles> Option AddAnglesOption(Command& command, const char* name, Angles& angles) {
    return command.AddParsed(name, "A,B", "The position of the head, degrees: A 0 to 90, B -180 to 180, in steps of 15",
                             plans::ParseHeadAngles, plans::notTwoAngles, angles);
}

/// A point or an offset.
template <typename Point>
Option AddPointOption(Command& command, const char* name, const char* description, Point& point) {
    return command.AddParsed(name, "X,Y,Z", description, ParsePoint, "is not three numbers such as 0,0,-180", point);
}

template <typename Length> Option AddPositiveLengthOption(Command& command, const char* name, const char* unit,
                                                          const char* description, Length& length) {
    return command.AddParsed(name, unit, description, ParsePositiveLength, "is not a length above 0", length);
}

template <typename Number> Option AddNumberOption(Command& command, const char* name, const char* unit,
                                                  const char* description, Number& number,
                                                  double least = -std::numeric_limits<double>::infinity()) {
    return command.AddValue(name, unit, description, [&number, least](const std::string& text) {
        double value = 0.0;
        std::string problem = ReadNumber(text, least, value);
        if (problem.empty()) number = value;
        return problem;
    });
}

/// Reads the geometry file of a command that plans from it. Throws DoubtfulInput for a file with an entry that is
/// missing or is not wholly a number. With --force these problems are warnings, and the component decides what it
/// refuses.
settings::GeometryFile ReadGeometryFile(const GeometryOption& option, const text::Console& console);

/// The model of the head with the geometry of that file and the dimensions of the settings in force.
model::HeadModel ReadHead(const GeometryOption& option, const text::Console& console);

/// While it lives, the head's fixed dimensions come from --settings. Warns on standard error of every setting, in that
/// file or on this machine, that the component reads differently from what its text suggests.
class SettingsInUse {
public:
    SettingsInUse(const CommonOptions& options, const text::Console& console);

private:
    settings::SettingsOverride override;
};

} // namespace qmv40::cli

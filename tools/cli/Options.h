#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/model/HeadModel.h"
#include "tools/settings/GeometryFile.h"
#include "tools/settings/SettingsOverride.h"
#include "tools/text/Console.h"

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
/// Required.
void AddFromOption(Command& command, model::HeadAngles& from);
/// Not required.
void AddFromOption(Command& command, std::optional<model::HeadAngles>& from);
/// --at, the head's angles. Required.
void AddAtOption(Command& command, model::HeadAngles& at);
/// A point or an offset, in mm. Required.
void AddPointOption(Command& command, const char* name, const char* description, model::Vector3& point);
/// --tip, the offset of the stylus tip from the head's centre. Required.
void AddTipOption(Command& command, model::Vector3& tip);
/// Not required unless the caller says so.
Option AddPointOption(Command& command, const char* name, const char* description,
                      std::optional<model::Vector3>& point);
/// A length above 0. `unit`: what the help shows for the value, such as "MM". Not required.
Option AddPositiveLengthOption(Command& command, const char* name, const char* unit, const char* description,
                               double& length);
Option AddPositiveLengthOption(Command& command, const char* name, const char* unit, const char* description,
                               std::optional<double>& length);
/// Not required unless the caller says so.
Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets);

/// Reads the geometry file of a command that plans from it. Throws DoubtfulInput for a file with an entry that is
/// missing or is not wholly a number. With --force these problems are warnings, and the component decides what it
/// refuses.
settings::GeometryFile ReadGeometryFile(const GeometryOption& option, const text::Console& console);

/// The model of the head with the geometry of that file and the dimensions of the settings in force.
model::HeadModel ReadHead(const GeometryOption& option, const text::Console& console);

/// While it lives, the head's fixed dimensions come from --settings. Warns on standard error of every setting, in that
/// file or on this machine, that is not read as it looks.
class SettingsInUse {
public:
    SettingsInUse(const CommonOptions& options, const text::Console& console);

private:
    settings::SettingsOverride override;
};

} // namespace qmv40::cli

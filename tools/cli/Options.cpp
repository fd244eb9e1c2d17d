#include "tools/cli/Options.h"

#include "tools/plans/HeadAnglesText.h"

namespace qmv40::cli {

namespace {

/// Reads head angles and passes them on; returns what is wrong with the text.
template <typename Take> std::string ReadAngles(const std::string& value, Take&& take) {
    const auto angles = plans::ParseHeadAngles(value);
    if (!angles) return "'" + value + "' is not two angles in degrees such as 45,-90";
    take(*angles);
    return "";
}

template <typename Angles> Option AddFrom(Command& command, Angles& from) {
    return command.AddValue("--from", "A,B", "Where the head stands, degrees: A 0 to 90, B -180 to 180, in steps of 15",
                            [&from](const std::string& value) {
                                return ReadAngles(value, [&](const model::HeadAngles& angles) { from = angles; });
                            });
}

} // namespace

void AddJsonOption(Command& command, bool& json) {
    command.AddFlag("--json", json, "Print one JSON document instead of text");
}

void AddCommonOptions(Command& command, CommonOptions& options) {
    AddJsonOption(command, options.json);
    command.AddText("--settings", options.settings, "FILE",
                    "Take the head's fixed dimensions from this settings file, in the registry export format");
}

void AddGeometryOption(Command& command, std::string& fileName) {
    command.AddText("--geometry", fileName, "FILE", "Head geometry file, as `qmv40 geometry --output` writes it")
        .Require();
}

void AddFromOption(Command& command, model::HeadAngles& from) { AddFrom(command, from).Require(); }

void AddFromOption(Command& command, std::optional<model::HeadAngles>& from) { AddFrom(command, from); }

Option AddToOption(Command& command, std::vector<model::HeadAngles>& targets) {
    return command.AddValues(
        "--to", "A,B",
        "Where it is to go, rounded to whole degrees. Given several times: a tour, each plan starting where the one "
        "before ended",
        [&targets](const std::string& value) {
            return ReadAngles(value, [&](const model::HeadAngles& angles) { targets.push_back(angles); });
        });
}

} // namespace qmv40::cli

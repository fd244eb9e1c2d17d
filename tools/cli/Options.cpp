#include "cli/Options.h"

namespace {

HeadAngles AnglesOrUsageError(const std::string& option, const std::string& text) {
    if (const auto angles = ParseHeadAngles(text)) return *angles;
    throw CLI::ValidationError(option, "'" + text + "' is not two angles in degrees such as 45,-90");
}

template <typename Angles> CLI::Option* AddFrom(CLI::App& command, Angles& from) {
    return command
        .add_option_function<std::string>(
            "--from", [&from](const std::string& text) { from = AnglesOrUsageError("--from", text); },
            "Where the head stands, degrees: A 0 to 90, B -180 to 180, in steps of 15")
        ->type_name("A,B");
}

} // namespace

void AddCommonOptions(CLI::App& command, CommonOptions& options) {
    command.add_flag("--json", options.json, "Print one JSON document instead of text");
    command
        .add_option("--settings", options.settings,
                    "Take the head's fixed dimensions from this settings file, in the registry export format")
        ->type_name("FILE");
}

void AddGeometryOption(CLI::App& command, std::string& fileName) {
    command.add_option("--geometry", fileName, "Head geometry file, as `qmv40 geometry --output` writes it")
        ->required()
        ->type_name("FILE");
}

void AddFromOption(CLI::App& command, HeadAngles& from) { AddFrom(command, from)->required(); }

void AddFromOption(CLI::App& command, std::optional<HeadAngles>& from) { AddFrom(command, from); }

void AddToOption(CLI::App& command, std::vector<HeadAngles>& targets) {
    command
        .add_option_function<std::vector<std::string>>(
            "--to",
            [&targets](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) targets.push_back(AnglesOrUsageError("--to", text));
            },
            "Where it is to go, rounded to whole degrees. Given several times: a tour, each plan starting where the "
            "one "
            "before ended")
        ->required()
        ->type_name("A,B");
}

#include "tools/motion/Export.h"
#include "tools/motion/Polyline.h"
#include "tools/text/Numbers.h"

#include <cstddef>

namespace qmv40::motion {

namespace {

constexpr double secondsOfMinute = 60.0;

/// Commands of the protocol, each with its tag: five digits, counted up.
class Commands {
public:
    void Add(const std::string& command) {
        constexpr std::size_t digits = 5;
        constexpr std::size_t tags = 99'999; // 00000 is reserved for the server
        const std::string number = std::to_string(count++ % tags + 1);
        text += std::string(digits - number.size(), '0') + number + " " + command + "\n";
    }
    void AddComment(const std::string& comment) { text += "# " + comment + "\n"; }
    void AddStop(const std::string& reason) { text += "STOP " + reason + "\n"; }

    std::string Text() && { return std::move(text); }

private:
    std::string text;
    std::size_t count = 0;
};

} // namespace

std::string IppDmeText(std::span<const Step> program, const ExportOptions& options) {
    Commands commands;
    commands.AddComment(std::string(exportMark) + "ippdme");
    for (const std::string& line : options.heading) commands.AddComment(line);
    commands.AddComment(
        "Assumed: I++ DME 1.4; lengths in mm, speeds in mm/s; GoTo brings the active tool to a place in "
        "the coordinate system in force, here the machine's own");
    commands.AddComment("Send every line with CR LF at its end, and the next one when the server has completed it.");
    commands.AddComment(
        "Lines that begin with # are for people: the protocol has no comments, so a sender leaves them out.");
    // The names of the tools, and which tool has no tip offset, depend on the machine.
    commands.AddComment("STOP is no command: a server refuses it. Confirm what it says, then delete that line.");
    commands.AddStop("Select a tool without any tip offset: the tip at the head centre. With a tip in force every "
                     "position would be wrong by its offset.");
    commands.Add("StartSession()");
    commands.Add("SetCoordSystem(MachineCsy)");
    commands.Add("SetProp(Tool.GoToPar.Speed(" + text::ExactText(options.feed / secondsOfMinute) + "))");
    for (const Step& step : program) {
        commands.AddComment(NameOf(step));
        for (const model::Vector3& end : ChordEnds(step.path, options.chord)) {
            commands.Add("GoTo(X(" + CoordinateText(end.x) + "), Y(" + CoordinateText(end.y) + "), Z(" +
                         CoordinateText(end.z) + "))");
        }
    }
    commands.Add("EndSession()");
    return std::move(commands).Text();
}

} // namespace qmv40::motion

#include "tools/motion/Export.h"
#include "tools/motion/Polyline.h"
#include "tools/text/Numbers.h"

namespace qmv40::motion {

namespace {

constexpr double millimetresOfMetre = 1000.0;

std::string DmisComment(const std::string& text) { return "$$ " + text + "\n"; }

} // namespace

std::string DmisText(std::span<const Step> program, const ExportOptions& options) {
    std::string text = DmisComment(std::string(exportMark) + "dmis");
    for (const std::string& line : options.heading) text += DmisComment(line);
    text += DmisComment("Assumed: DMIS 5.2; GOTO brings the selected sensor to a place in the datum system in force,");
    text += DmisComment("here the machine's own; MPM is metres a minute; DMESW/PAUSE waits for a person");
    // No DMIS statement makes GOTO ignore the offset of the selected tip, so a person has to select a sensor without
    // one.
    text += "DMISMN/'qmv40 export',5.2\n"
            "UNITS/MM,ANGDEC\n"
            "D(QMV40MCS)=DATSET/MCS\n"
            "MODE/PROG,MAN\n"
            "PRCOMP/OFF\n"
            "FLY/OFF\n"
            "TEXT/OPER,'Select a sensor without any tip offset: the tip at the head centre'\n"
            "TEXT/OPER,'With a tip in force every position would be wrong by its offset'\n"
            "DMESW/PAUSE\n"
            "FEDRAT/POSVEL,MPM," +
            text::ExactText(options.feed / millimetresOfMetre) + "\n";
    for (const Step& step : program) {
        text += DmisComment(NameOf(step));
        for (const model::Vector3& end : ChordEnds(step.path, options.chord)) {
            text += "GOTO/" + CoordinateText(end.x) + "," + CoordinateText(end.y) + "," + CoordinateText(end.z) + "\n";
        }
    }
    return text + "ENDFIL\n";
}

} // namespace qmv40::motion

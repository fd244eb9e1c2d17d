#include "tools/cli/JudgedCapture.h"

#include "tools/cli/Options.h"
#include "tools/plans/PlannedMove.h"
#include "tools/settings/GeometryFile.h"
#include "tools/settings/HeadSettings.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

namespace qmv40::cli {

namespace {

/// The answer of a calculator that was given a geometry.
ComputedHead AnswerOf(component::Calculator& calculator) {
    const text::PassingFile passing(std::filesystem::temp_directory_path() / "qmv40");
    const std::string name = text::Utf8Name(passing.Path());
    calculator.SaveHeadGeometry(name);
    // The file's seven numbers: head centre (0 to 2), safe position (3 to 5), rotation about Z (6)
    const auto numbers = settings::GeometryFile(name).Numbers();
    return {plans::VectorOf(calculator.PoleSpherePosition()), {numbers[3], numbers[4], numbers[5]}, numbers[6]};
}

/// The locked-to-unlocked offset in force: of --settings, or of this machine.
model::Vector3 UnlockingInForce() {
    const auto values = settings::SettingsInForce();
    const auto table = HeadSettings();
    model::Vector3 shift;
    for (std::size_t i = 0, axis = 0; i < values.size(); ++i) {
        if (table[i].offset == HeadOffset::LockedToUnlocked) shift[axis++] = values[i];
    }
    return shift;
}

diagnosis::CaptureUnderTest UnderTest(const CaptureOptions& options, const captures::CaptureFiles& capture,
                                      const ComputedHead& head) {
    diagnosis::CaptureUnderTest test;
    test.unlocking = capture.unlocking;
    test.sets = capture.sets;
    test.rotation = head.rotationAroundZ;
    test.headCentre = head.headCentre;
    test.centreWithin = options.centreWithin;
    const double unit = captures::MillimetresIn(options.unit);
    if (options.sphere) test.knownSphere = unit * *options.sphere;
    if (options.stylus) test.knownStylus = unit * *options.stylus;
    return test;
}

} // namespace

captures::CaptureFiles ReadBothSets(const CaptureOptions& options, text::Progress& progress) {
    captures::CaptureFiles capture;
    capture.aAxis = captures::ReadCapture(options.aAxis, options.unit);
    progress.Advance(1);
    capture.bAxis = captures::ReadCapture(options.bAxis, options.unit);
    capture.unlocking = UnlockingInForce();
    capture.sets = captures::SetsOf(capture.aAxis.items, capture.bAxis.items, capture.unlocking);
    progress.Advance(1);
    return capture;
}

JudgedCapture Judged(const CaptureOptions& options, const captures::CaptureFiles& capture,
                     component::Calculator& calculator, text::Progress& progress) {
    calculator.EnterHeadGeometry(capture.aAxis.items, capture.bAxis.items);
    progress.Advance(1);
    const ComputedHead head = AnswerOf(calculator);
    diagnosis::CaptureUnderTest test = UnderTest(options, capture, head);
    progress.Advance(1);
    diagnosis::Judgement judgement = diagnosis::JudgeCapture(test);
    return {std::move(judgement), head, std::move(test)};
}

void AddCaptureFiles(Command& command, CaptureOptions& options, bool isRequired) {
    Option aAxis = command.AddText("--a-axis", options.aAxis, "FILE", "Points captured while A alone was turned (CSV)");
    Option bAxis = command.AddText("--b-axis", options.bAxis, "FILE", "Points captured while B alone was turned (CSV)");
    if (isRequired) {
        aAxis.Require();
        bAxis.Require();
    } else {
        aAxis.Need("--b-axis");
        bAxis.Need("--a-axis");
    }
}

void AddJudgingOptions(Command& command, CaptureOptions& options) {
    AddPositiveLengthOption(
        command, "--centre-within", "MM",
        "Warn when the head centre is not known to this, twice its standard deviation. 0.05 unless given",
        options.centreWithin);
    AddPointOption(
        command, "--sphere",
        "The pole sphere's centre, measured with a tip that is qualified to the machine's zero-length reference",
        options.sphere);
    AddPositiveLengthOption(command, "--stylus", "LENGTH",
                            "The stylus from the crossing of the head's axes to the centre of its ball",
                            options.stylus);
}

} // namespace qmv40::cli

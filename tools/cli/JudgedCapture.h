#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/component/Calculator.h"
#include "tools/diagnosis/Diagnosis.h"
#include "tools/report/FindingMessage.h"
#include "tools/text/Progress.h"

#include <optional>
#include <string>

namespace qmv40::cli {

/// The capture that a command is given, and what is known of it.
struct CaptureOptions {
    std::string aAxis; ///< file name
    std::string bAxis;
    double centreWithin = diagnosis::thresholds::centreWithin;
    text::LengthUnit unit = text::LengthUnit::Millimetre; ///< of the capture
    std::optional<model::Vector3> sphere;                 ///< in that unit
    std::optional<double> stylus;
};

/// The component's answer to a capture. All of it comes from the component itself: its interface returns the head
/// centre, the file that it saves has the rest.
struct ComputedHead {
    model::Vector3 headCentre;
    model::Vector3 safePosition;
    double rotationAroundZ = 0.0; ///< degrees
};

/// The component's answer to a capture, and the judgement of the points.
struct JudgedCapture : diagnosis::Judgement {
    ComputedHead head;
    diagnosis::CaptureUnderTest capture;

    /// The stylus tip of the fitted head, in the head's frame; 0, 0, 0 without one.
    model::Vector3 Tip() const { return diagnosis ? diagnosis->head.model.tip : model::Vector3{}; }
};

/// --a-axis and --b-axis.
void AddCaptureFiles(Command& command, CaptureOptions& options, bool isRequired);
/// --centre-within, --sphere and --stylus.
void AddJudgingOptions(Command& command, CaptureOptions& options);

/// The number of steps that `text::Progress` shows of a large capture.
inline constexpr std::size_t longStepsOfACapture = 5;

/// Both files, in millimetres, and their points, brought to the locked position. Takes two steps.
captures::CaptureFiles ReadBothSets(const CaptureOptions& options, text::Progress& progress);
/// Enters a capture into the component, and judges it with its answer. Takes two steps: when the component has accepted
/// the capture, and before the points are judged. Throws ComponentError when the component refuses the capture.
JudgedCapture Judged(const CaptureOptions& options, const captures::CaptureFiles& capture,
                     component::Calculator& calculator, text::Progress& progress);

} // namespace qmv40::cli

#pragma once

#include "interface/Records.h"
#include "tests/tools/diagnosis/HumanMistakes.h"
#include "tools/diagnosis/Diagnosis.h"

#include <string>

using Items = std::vector<HeadAlignmentDataItem>;

Items ItemsOf(const std::vector<paper::CapturedLine>& lines);

/// A capture in the locked position, with the component's answer. No settings are in force. An HRESULT is thrown when
/// the component refuses it.
qmv40::diagnosis::CaptureUnderTest UnderTest(const Items& aSet, const Items& bSet);

/// The judgement of a capture, made by the code of `qmv40 geometry`.
struct PaperTrial {
    explicit PaperTrial(const PaperCapture& capture);

    /// No component error and no fault: the geometry would be written.
    bool IsAccepted() const { return componentAnswered && !HasFault(); }
    bool HasFault() const { return Has(findings, qmv40::diagnosis::Severity::Fault); }
    /// The geometry written is off by more than 0.1 mm or 0.05 degrees and by more than four of the standard deviations
    /// stated, or by more than 0.5 mm or 0.2 degrees.
    bool IsWrong() const { return isWrong; }
    /// True when a finding has one of the names, and always when none is given.
    bool Names(const std::vector<std::string_view>& culprits) const;
    /// For messages.
    std::string Text() const;

    bool componentAnswered = false;
    bool isWrong = false;
    double centreOff = 0.0;   ///< millimetres
    double rotationOff = 0.0; ///< degrees
    double centreKnown = 0.0; ///< the stated standard deviation
    double rotationKnown = 0.0;
    std::vector<qmv40::diagnosis::Finding> findings;
};

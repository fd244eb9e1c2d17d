#pragma once

#include "diagnostics/Diagnosis.h"
#include "support/SimulatedHead.h"

#include <string>

/// Captures as the diagnostics take them, with the component's answer.

using Items = std::vector<HeadAlignmentDataItem>;

/// Mounted a little turned, a stylus as straight as they are.
SimulatedHead SomeSimulatedHead();

/// As they were captured, not brought to the locked position.
diagnostics::CapturedSets SetsOf(const Items& aSet, const Items& bSet);

/// Brought to the locked position by the component, with the rotation that it finds. The settings are none.
diagnostics::CaptureUnderTest UnderTest(const Items& aSet, const Items& bSet);

/// The diagnosis of what the component accepts; fails the test where there is none.
diagnostics::Diagnosis DiagnosisOf(const Items& aSet, const Items& bSet);

const diagnostics::Finding* FindingOf(const diagnostics::Diagnosis& diagnosis, diagnostics::FindingKind kind);

/// For messages: every finding with its points and figures.
std::string TextOf(const diagnostics::Diagnosis& diagnosis);

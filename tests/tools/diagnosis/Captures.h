#pragma once

#include "tests/support/SimulatedHead.h"
#include "tests/tools/diagnosis/PaperTrial.h"
#include "tools/captures/Capture.h"

using namespace qmv40;

/// Captures as the diagnostics take them, with the component's answer.

/// A head that is mounted turned by -1.35 degrees, with a stylus tip that is half a millimetre off the B axis at A = 0.
SimulatedHead SomeSimulatedHead();

/// As they were captured, not brought to the locked position.
inline captures::CapturedSets SetsOf(const Items& aSet, const Items& bSet) { return captures::SetsOf(aSet, bSet, {}); }

/// The diagnosis of what the component accepts; fails the test where there is none.
diagnosis::Diagnosis DiagnosisOf(const Items& aSet, const Items& bSet);

const diagnosis::Finding* FindingOf(const diagnosis::Diagnosis& diagnosis, diagnosis::FindingKind kind);

/// For messages: every finding with its points and figures.
std::string TextOf(const diagnosis::Diagnosis& diagnosis);

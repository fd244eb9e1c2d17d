#pragma once

#include "cli/Console.h"
#include "cli/FindingWords.h"
#include "cli/Json.h"
#include "diagnostics/Diagnosis.h"

/// What a capture is worth, for people and for programs.

/// How well the head is known, the second opinion, and every point.
void PrintDiagnosis(const diagnostics::Diagnosis& diagnosis, const CaptureFiles& files, const Console& console);
/// The findings, each with what to do; that there are none when there are none.
void PrintFindings(const std::vector<diagnostics::Finding>& findings, const CaptureFiles& files,
                   const diagnostics::Vector3& tip, std::ostream& out);

Json DiagnosisJson(const diagnostics::Diagnosis& diagnosis, const CaptureFiles& files);
Json FindingsJson(const std::vector<diagnostics::Finding>& findings, const CaptureFiles& files,
                  const diagnostics::Vector3& tip);

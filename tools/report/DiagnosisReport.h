#pragma once

#include "tools/diagnosis/Diagnosis.h"
#include "tools/report/FindingMessage.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

namespace qmv40::report {

/// The diagnosis of a capture, for people and for programs

/// Prints how well the head is known, the second opinion (the head fitted with the captured angles), and the points:
/// all, or of a large capture those that are farthest from their places.
void PrintDiagnosis(const diagnosis::Diagnosis& diagnosis, const captures::CaptureFiles& files,
                    const text::Console& console);
/// The worst severity: "fault" or "warning"; "good" when there is none of either.
std::string VerdictOf(const std::vector<diagnosis::Finding>& findings);
/// Prints the verdict and the findings, the most severe first, each with its remedy.
void PrintVerdict(const std::vector<diagnosis::Finding>& findings, const captures::CaptureFiles& files,
                  const model::Vector3& tip, const text::Console& console);
/// The findings in the shape that all commands share.
std::vector<text::Finding> FindingsOf(const std::vector<diagnosis::Finding>& findings,
                                      const captures::CaptureFiles& files, const model::Vector3& tip);

text::Json DiagnosisJson(const diagnosis::Diagnosis& diagnosis, const captures::CaptureFiles& files);
text::Json FindingsJson(const std::vector<diagnosis::Finding>& findings, const captures::CaptureFiles& files,
                        const model::Vector3& tip);

} // namespace qmv40::report

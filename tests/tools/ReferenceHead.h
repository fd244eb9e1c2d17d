#pragma once

#include "tools/ToolRun.h"

/// A document for each reference head, by name.
std::vector<Json> LoadReferenceDocuments();

/// Takes a reference head through the tool, with a settings file where `settings` names one, and compares head centre,
/// rotation and every plan with what was worked out.
void ExpectReferenceHead(const Json& head, const std::string& settings);

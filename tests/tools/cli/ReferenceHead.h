#pragma once

#include "tests/tools/cli/ToolRun.h"

/// A document for each reference head, by name.
std::vector<Json> LoadReferenceDocuments();

/// The geometry that the tool makes of a reference head's capture, saved in `folder`; the file's name. Head centre and
/// rotation are compared with what was worked out. `settings`: a file's name, or empty.
std::string ReferenceGeometryFile(const Json& head, const TemporaryFolder& folder, const std::string& settings);

/// Takes a reference head through the tool, with a settings file where `settings` names one, and compares head centre,
/// rotation and every plan with what was worked out.
void ExpectReferenceHead(const Json& head, const std::string& settings);

/// A settings file with these texts, by the names of the values.
std::string SettingsText(const Json& values);

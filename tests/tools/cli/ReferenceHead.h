#pragma once

#include "tests/tools/cli/ToolRun.h"

/// The documents of all reference heads, in the order of their names.
std::vector<Json> LoadReferenceDocuments();

/// Lets the tool compute the geometry of a reference head's capture and save it in `folder`. Expects the head centre
/// and the rotation that were worked out independently. `settings`: a settings file's name, or empty. Returns the name
/// of the geometry file.
std::string ReferenceGeometryFile(const Json& head, const TemporaryFolder& folder, const std::string& settings);

/// Expects that the tool gives the head centre, the rotation and every plan of a reference head as they were worked out
/// independently. `settings`: a settings file's name, or empty.
void ExpectReferenceHead(const Json& head, const std::string& settings);

/// A tour of that many plans between positions of the head, as CSV. It is always the same: the generator is seeded.
std::string RandomTour(int plans);

/// The content of a settings file with these values: name and text.
std::string SettingsText(const Json& values);

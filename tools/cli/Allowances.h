#pragma once

#include "check/PlanCheck.h"

#include <CLI/CLI.hpp>

/// What a plan is allowed: --sphere-radius, --ball-radius, --clearance and --x-travel, --y-travel, --z-travel.
void AddAllowances(CLI::App& command, check::CheckOptions& options);

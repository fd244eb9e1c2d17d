#pragma once

#include "cli/ComponentError.h"
#include "cli/Failures.h"
#include "cli/Fits.h"
#include "cli/HeadAngles.h"
#include "interface/Records.h"

#include <nlohmann/json.hpp>
#include <ostream>

/// The documents that --json prints. Members keep the order in which they are written here; doubles read back to the
/// same bits, what is not a finite number is null.
using Json = nlohmann::ordered_json;

Json PointJson(const CMaVector& point);
Json DirectionJson(const CMaVector& direction);
Json PositionJson(const XYZData& position);
Json ArcJson(const ArcData& arc);
Json AnglesJson(const HeadAngles& angles);
Json MovesJson(const RequiredMoves& moves);

/// Members shared by every circle: centre, normal, radius, rms, residuals.
Json CircleJson(const CircleFit& fit);

Json ErrorJson(const ComponentError& error);
Json ErrorJson(const InputError& error);

void PrintJson(const Json& document, std::ostream& out);

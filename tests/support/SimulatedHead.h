#pragma once

#include "interface/Records.h"
#include "tools/model/SimulatedCapture.h"

/// The simulated head with captures in the component's records.
using SimulatedHead = qmv40::model::SimulatedHead<HeadAlignmentDataItem>;
using qmv40::model::WithNoise;

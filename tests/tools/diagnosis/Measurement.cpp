#include "tests/tools/diagnosis/Measurement.h"

#include "tools/model/Angles.h"

namespace paper {

using namespace qmv40::model;

Vector3 Measurement::Reading() const {
    const Vector3 tilted = AboutX(Rotation(-ToRadians(a)), tip);
    const Vector3 onB = AboutY(Rotation(ToRadians(squareness)), tilted) + Vector3{0.0, axisOffset, 0.0};
    const Vector3 swivelled = AboutZ(Rotation(ToRadians(mounting + b)), onB);
    const Vector3 leant = AboutX(Rotation(ToRadians(leanX)), AboutY(Rotation(ToRadians(leanY)), swivelled));
    return sphere - leant + shift;
}

std::vector<CapturedLine> LinesOf(const Measurements& measurements, double noise, std::mt19937_64& generator) {
    std::normal_distribution<double> normal(0.0, 1.0);
    std::vector<CapturedLine> lines;
    lines.reserve(measurements.size());
    for (const Measurement& measurement : measurements) {
        CapturedLine line = measurement.Line();
        for (std::size_t i = 0; i < 3; ++i) line.position[i] += noise * normal(generator);
        lines.push_back(line);
    }
    return lines;
}

} // namespace paper

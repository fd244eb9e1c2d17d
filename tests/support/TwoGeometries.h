#pragma once

#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// Two geometries that have no number in common, so that a file or an object with numbers of both is detected.
namespace TwoGeometries {

inline std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The seven entries of geometry 1 or 2 in a file, between lines that belong to another program.
inline std::string FileText(int which) {
    const std::string d = std::to_string(which);
    const auto number = [&](const char* exponent) { return "=" + d + "." + d + d + d + "000000" + exponent + "\r\n"; };
    return "[Machine]\r\nName=left\r\n[HEADCENTRE]\r\nX" + number("e+01") + "Y" + number("e+02") + "Z" +
           number("e+03") + "[SAFEPOSITION]\r\nX" + number("e+00") + "Y" + number("e-01") +
           "Z=" + (which == 1 ? "1.146000000e+03" : "2.257000000e+03") +
           "\r\n[AlignmentOffset]\r\nRequiredRotationAroundZ" + number("e+01") + "[Other]\r\nX=7\r\n";
}

/// X, Y and Z of the head centre of geometry 1 or 2.
inline XYZData HeadCentre(int which) { return {11.11 * which, 111.1 * which, 1111.0 * which}; }

inline void Put(const std::filesystem::path& path, int which) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!(file << FileText(which)).flush()) throw std::runtime_error("cannot write " + path.string());
}

/// A calculator that has loaded geometry 1 or 2. The file is removed again.
inline qmv40::ComPointer<IQMVCalculator2> Calculator(const std::filesystem::path& folder, int which) {
    const auto path = folder / ("geometry " + std::to_string(which) + ".ini");
    Put(path, which);
    auto calculator = CreateCalculator();
    const HRESULT loaded = calculator->LoadHeadGeometryFromFile(Bstr(path).Address());
    std::filesystem::remove(path);
    if (FAILED(loaded)) throw std::runtime_error("the test's geometry cannot be loaded");
    return calculator;
}

/// The number of the calculator's geometry: 1, 2, or 0 for neither.
inline int HeldBy(IQMVCalculator2& calculator) {
    XYZData pole{};
    calculator.GetPoleSpherePosition(&pole);
    for (const int which : {1, 2}) {
        const XYZData centre = HeadCentre(which);
        const auto isSame = [](double left, double right) { return left - right < 1e-9 && right - left < 1e-9; };
        if (isSame(pole.XPosition, centre.XPosition) && isSame(pole.YPosition, centre.YPosition) &&
            isSame(pole.ZPosition, centre.ZPosition))
            return which;
    }
    return 0;
}

/// The number of the geometry in the file, if it is complete and the other lines are unchanged: 1, 2, or 0 for neither.
inline int HeldByFile(const std::filesystem::path& path) {
    const std::string content = ContentOf(path);
    for (const int which : {1, 2})
        if (content == FileText(which)) return which;
    return 0;
}

} // namespace TwoGeometries

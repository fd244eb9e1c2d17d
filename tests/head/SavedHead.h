#pragma once

#include "head/RoundThePole.h"
#include "tests/support/Bstr.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/model/Vector3.h"

#include <cstdio>
#include <fstream>
#include <string>

/// Writes a head geometry file, so that a test can load a head at a given place without a capture.
struct SavedHead {
    qmv40::model::Vector3 headCentre{0.0, 0.0, 0.0};
    qmv40::model::Vector3 safePosition{0.0, 0.0, 0.0};
    double rotation = 0.0; ///< about the machine's Z axis, degrees

    /// The text of the file. Each number has all its digits.
    std::string Text() const {
        return "[HEADCENTRE]\r\n" + Coordinates(headCentre) + "[SAFEPOSITION]\r\n" + Coordinates(safePosition) +
               "[AlignmentOffset]\r\nRequiredRotationAroundZ=" + Digits(rotation) + "\r\n";
    }

    void LoadInto(RoundThePole& head) const {
        const TemporaryFolder folder;
        const std::filesystem::path path = folder.Path("head.ini");
        std::ofstream(path, std::ios::binary) << Text();
        Bstr name(path);
        head.LoadFromFile(name.Address());
    }

private:
    static std::string Digits(double value) {
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", value);
        return text;
    }
    static std::string Coordinates(const qmv40::model::Vector3& point) {
        return "X=" + Digits(point.x) + "\r\nY=" + Digits(point.y) + "\r\nZ=" + Digits(point.z) + "\r\n";
    }
};

#pragma once

#include "tests/support/AlignmentArray.h"
#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/model/HeadAngles.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

/// The results of new calculators. Results after millions of calls are compared with them.

using qmv40::model::HeadAngles;

inline constexpr std::array<HeadAngles, 6> positions{
    {{0.0, 0.0}, {15.0, -180.0}, {45.0, 90.0}, {90.0, 180.0}, {30.0, -75.0}, {75.0, 15.0}}};

/// A geometry that can be entered, and a file of it.
class Geometry {
public:
    Geometry(const std::filesystem::path& folder, int number);

    HRESULT EnterInto(IQMVCalculator& calculator) { return calculator.EnterHeadGeometry(a.Address(), b.Address()); }
    HRESULT LoadInto(IQMVCalculator& calculator) { return calculator.LoadHeadGeometryFromFile(name.Address()); }

private:
    AlignmentArray a;
    AlignmentArray b;
    Bstr name;
};

/// A geometry in a calculator: entered, or loaded from the file (with ten digits).
struct Held {
    Geometry* geometry;
    bool isLoaded;

    HRESULT GiveTo(IQMVCalculator& calculator) const {
        return isLoaded ? geometry->LoadInto(calculator) : geometry->EnterInto(calculator);
    }
};

/// All results, from new calculators.
class Answers {
public:
    static constexpr std::size_t geometryCount = 4;
    static constexpr std::size_t heldCount = 2 * geometryCount;

    explicit Answers(const std::filesystem::path& folder);

    const Held& HeldAs(std::size_t index) const { return held[index]; }
    const std::array<double, numbersInAPlan>& Plan(std::size_t index, std::size_t from, std::size_t to) const {
        return plans[(index * positions.size() + from) * positions.size() + to];
    }
    const XYZData& Pole(std::size_t index) const { return poles[index]; }
    const std::string& SavedText(std::size_t index) const { return savedTexts[index]; }

private:
    std::vector<std::unique_ptr<Geometry>> geometries;
    std::vector<Held> held;
    std::vector<std::array<double, numbersInAPlan>> plans;
    std::vector<XYZData> poles;
    std::vector<std::string> savedTexts;
};

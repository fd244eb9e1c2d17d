#pragma once

#include "tests/head/HeadTest.h"
#include "tests/support/ReferenceHeads.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// A test that runs for every reference head. The store has the settings of that head.
class ReferenceHeadTest : public HeadTest, public testing::WithParamInterface<ReferenceHead> {
protected:
    void SetUp() override {
        for (const auto& [name, text] : Case().settings) Store(name.c_str(), text.c_str());
    }
    const ReferenceHead& Case() const { return GetParam(); }

    /// The allowed differences from the reference. Lengths: relative to the largest coordinate of the head centre.
    /// Components of directions: `agreement`. Angles: `agreement` in radians, converted to degrees.
    double LengthAgreement() const {
        const auto& [x, y, z] = Case().headCentre;
        return agreement * std::max({std::abs(x), std::abs(y), std::abs(z)});
    }
    static constexpr double agreement = 1e-9;
    static constexpr double angleAgreement = agreement * 57.3;
};

inline std::string TestNameOf(const testing::TestParamInfo<ReferenceHead>& head) {
    std::string name = head.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

/// The entries of a geometry file in their order. They are read here, not by the component.
inline std::vector<ReferenceHead::FileEntry> EntriesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::vector<ReferenceHead::FileEntry> entries;
    std::string section;
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::size_t equals = line.find('=');
        if (line.starts_with('['))
            section = line.substr(1, line.find(']') - 1);
        else if (equals != std::string::npos)
            entries.push_back({section, line.substr(0, equals), line.substr(equals + 1)});
    }
    return entries;
}

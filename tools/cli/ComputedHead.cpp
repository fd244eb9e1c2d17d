#include "tools/cli/ComputedHead.h"

#include "tools/settings/GeometryFile.h"
#include "tools/settings/HeadSettings.h"

#include <filesystem>
#include <random>
#include <string>

namespace qmv40::cli {

namespace {

/// A temporary file with a unique name.
class PassingFile {
public:
    PassingFile()
        : path(std::filesystem::temp_directory_path() / ("qmv40-" + std::to_string(std::random_device{}()) + ".ini")) {}
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }

    std::string Name() const {
        const std::u8string name = path.u8string();
        return {name.begin(), name.end()};
    }

private:
    std::filesystem::path path;
};

} // namespace

ComputedHead AnswerOf(component::Calculator& calculator) {
    const PassingFile passing;
    calculator.SaveHeadGeometry(passing.Name());
    // Head centre, safe position, rotation about Z
    const auto numbers = settings::GeometryFile(passing.Name()).Numbers();
    return {calculator.PoleSpherePosition(), {numbers[3], numbers[4], numbers[5]}, numbers[6]};
}

model::Vector3 UnlockingInForce() {
    const auto values = settings::SettingsInForce();
    const auto table = HeadSettings();
    model::Vector3 shift;
    for (std::size_t i = 0, axis = 0; i < values.size(); ++i) {
        if (table[i].offset == HeadOffset::LockedToUnlocked) shift[axis++] = values[i];
    }
    return shift;
}

} // namespace qmv40::cli

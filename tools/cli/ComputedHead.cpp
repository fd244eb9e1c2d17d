#include "tools/cli/ComputedHead.h"

#include "tools/settings/GeometryFile.h"
#include "tools/settings/HeadSettings.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

namespace qmv40::cli {

ComputedHead AnswerOf(component::Calculator& calculator) {
    const text::PassingFile passing(std::filesystem::temp_directory_path() / "qmv40");
    const std::string name = text::Utf8Name(passing.Path());
    calculator.SaveHeadGeometry(name);
    // The file's seven numbers: head centre (0 to 2), safe position (3 to 5), rotation about Z (6)
    const auto numbers = settings::GeometryFile(name).Numbers();
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

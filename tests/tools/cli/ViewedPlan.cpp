#include "tests/tools/cli/ViewedPlan.h"

std::string ViewedHead::SpoiledPlan(const std::string& from, const std::string& to, const std::string& move,
                                    const std::string& number, const Json& value) const {
    const Json plan = PlainHead::Document("move", {"--from", from, "--to", to});
    const Json edited = Edited(plan, [&](Json& records) { records[move][number] = value; });
    return folder.Write(move + number + ".json", edited.dump());
}

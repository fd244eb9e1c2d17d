// Heads whose geometry and plans were worked out independently, through the whole tool: capture file, geometry file,
// moves.

#include "tests/tools/cli/ReferenceHead.h"

#include <gtest/gtest.h>

namespace {

TEST(ReferenceHeads, WithTheBuiltInDimensionsComeOutAsWorkedOut) {
    int heads = 0;
    for (const Json& head : LoadReferenceDocuments()) {
        if (!head["settings"].empty()) continue;
        ExpectReferenceHead(head, "");
        ++heads;
    }
    EXPECT_GE(heads, 3) << "the reference heads were not found";
}

} // namespace

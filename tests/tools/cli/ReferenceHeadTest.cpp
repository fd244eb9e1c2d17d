// The reference heads: their geometry and plans were worked out independently of the component. The tool reads their
// captures, writes a geometry file and plans moves from it.

#include "tests/tools/cli/ReferenceHead.h"

#include <gtest/gtest.h>

namespace {

TEST(ReferenceHeads, WithBuiltInDimensionsHaveTheExpectedPlans) {
    int heads = 0;
    for (const Json& head : LoadReferenceDocuments()) {
        if (!head["settings"].empty()) continue;
        ExpectReferenceHead(head, "");
        ++heads;
    }
    EXPECT_GE(heads, 3) << "the reference heads were not found";
}

} // namespace

// The structs of the C interface, as a C compiler lays them out, against the component's records and against numbers
// written here: every program that was compiled with the header counts on them.

#include "Layout.h"

#include "interface/ErrorCodes.h"
#include "interface/Records.h"
#include "qmv40.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <utility>

namespace {

struct Promise {
    const char* record;
    const char* field; ///< null: the record itself
    std::size_t number;
    std::size_t inComponent;
};

#define SIZE(record, own, number)                                                                                      \
    { #record, nullptr, number, sizeof(own) }
#define FIELD(record, own, field, number)                                                                              \
    { #record, #field, number, offsetof(own, field) }

constexpr Promise promises[] = {
    SIZE(qmv40_xyz, XYZData, 24),
    FIELD(qmv40_xyz, XYZData, XPosition, 0),
    FIELD(qmv40_xyz, XYZData, YPosition, 8),
    FIELD(qmv40_xyz, XYZData, ZPosition, 16),
    SIZE(qmv40_arc, ArcData, 56),
    FIELD(qmv40_arc, ArcData, XOrigin, 0),
    FIELD(qmv40_arc, ArcData, YOrigin, 8),
    FIELD(qmv40_arc, ArcData, ZOrigin, 16),
    FIELD(qmv40_arc, ArcData, iRotationVector, 24),
    FIELD(qmv40_arc, ArcData, jRotationVector, 32),
    FIELD(qmv40_arc, ArcData, kRotationVector, 40),
    FIELD(qmv40_arc, ArcData, RotationAngle, 48),
    SIZE(qmv40_alignment_point, HeadAlignmentDataItem, 40),
    FIELD(qmv40_alignment_point, HeadAlignmentDataItem, APosition, 0),
    FIELD(qmv40_alignment_point, HeadAlignmentDataItem, BPosition, 8),
    FIELD(qmv40_alignment_point, HeadAlignmentDataItem, XPosition, 16),
    FIELD(qmv40_alignment_point, HeadAlignmentDataItem, YPosition, 24),
    FIELD(qmv40_alignment_point, HeadAlignmentDataItem, ZPosition, 32),
    SIZE(qmv40_moves, RequiredMoves, 680),
    FIELD(qmv40_moves, RequiredMoves, ApproachUnLockLever, 0),
    FIELD(qmv40_moves, RequiredMoves, EngageWithUnLockLever, 24),
    FIELD(qmv40_moves, RequiredMoves, UnLock, 48),
    FIELD(qmv40_moves, RequiredMoves, DisengageFromUnLockLever, 104),
    FIELD(qmv40_moves, RequiredMoves, RotateToPeg, 128),
    FIELD(qmv40_moves, RequiredMoves, MoveToPegAtSafeZ, 184),
    FIELD(qmv40_moves, RequiredMoves, ApproachPeg, 208),
    FIELD(qmv40_moves, RequiredMoves, EngageWithPeg, 232),
    FIELD(qmv40_moves, RequiredMoves, IntermediateAPosition, 256),
    FIELD(qmv40_moves, RequiredMoves, MoveToBPosition, 312),
    FIELD(qmv40_moves, RequiredMoves, MoveToAPosition, 368),
    FIELD(qmv40_moves, RequiredMoves, DisengageFromPeg, 424),
    FIELD(qmv40_moves, RequiredMoves, DisengageFromPegToSafeZ, 448),
    FIELD(qmv40_moves, RequiredMoves, RotateToLockLever, 472),
    FIELD(qmv40_moves, RequiredMoves, MoveToLockLeverAtSafeZ, 528),
    FIELD(qmv40_moves, RequiredMoves, ApproachLockLever, 552),
    FIELD(qmv40_moves, RequiredMoves, EngageWithLockLever, 576),
    FIELD(qmv40_moves, RequiredMoves, Lock, 600),
    FIELD(qmv40_moves, RequiredMoves, DisengageFromLockLever, 656),
};

#undef FIELD
#undef SIZE

} // namespace

TEST(CLayout, EverySizeAndOffsetIsTheOnePromised) {
    const std::span layout(c_layout, c_layout_count);
    ASSERT_EQ(layout.size(), std::size(promises));
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const Promise& promise = promises[i];
        const char* const field = promise.field == nullptr ? "" : promise.field;
        EXPECT_STREQ(layout[i].record, promise.record);
        EXPECT_STREQ(layout[i].field == nullptr ? "" : layout[i].field, field);
        EXPECT_EQ(layout[i].number, promise.number) << promise.record << ' ' << field;
        EXPECT_EQ(promise.inComponent, promise.number) << promise.record << ' ' << field;
    }
}

TEST(CLayout, TheCodesAreThoseOfTheComponent) {
    constexpr std::pair<std::int32_t, HRESULT> codes[] = {
        {QMV40_E_READ_FROM_FILE, QMV_E_READ_FROM_FILE},
        {QMV40_E_WRITE_TO_FILE, QMV_E_WRITE_TO_FILE},
        {QMV40_E_NO_HEAD_GEOMETRY, QMV_E_NO_HEAD_GEOMETRY},
        {QMV40_E_POSITION_UNKNOWN, QMV_E_POSITION_UNKNOWN},
        {QMV40_E_TOO_FEW_POINTS, QMV_E_TOO_FEW_POINTS},
        {QMV40_E_FIXED_AXIS_MOVED, QMV_E_FIXED_AXIS_MOVED},
        {QMV40_E_INVALID_QUADRANT, QMV_E_INVALID_QUADRANT},
        {QMV40_E_GEOMETRY_IMPOSSIBLE, QMV_E_GEOMETRY_IMPOSSIBLE},
        {QMV40_E_GEOMETRY_LIMIT_REACHED, QMV_E_GEOMETRY_LIMIT_REACHED},
        {QMV40_E_INVALID_TARGET, QMV_E_INVALID_TARGET},
    };
    for (const auto& [inC, inComponent] : codes) EXPECT_EQ(inC, inComponent);
}

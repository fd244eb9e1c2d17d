// The structs of the C interface as a C compiler lays them out, and the types of their fields and of the functions.
// They are compared with the component's records and with what is written here: compiled programs depend on all of
// them.

#include "Layout.h"

#include "interface/ErrorCodes.h"
#include "interface/Records.h"
#include "qmv40.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <type_traits>
#include <utility>

namespace {

struct Promise {
    const char* record;
    const char* field; ///< null: the record itself
    std::size_t number;
    std::size_t inComponent;
    bool hasRequiredType;
};

/// Whether a field is a double, a position or an arc in both records.
template <typename InC, typename InComponent> constexpr bool HasRequiredType() {
    if constexpr (std::is_same_v<InC, qmv40_xyz>) return std::is_same_v<InComponent, XYZData>;
    if constexpr (std::is_same_v<InC, qmv40_arc>) return std::is_same_v<InComponent, ArcData>;
    return std::is_same_v<InC, double> && std::is_same_v<InComponent, double>;
}

#define SIZE(record, own, number)                                                                                      \
    { #record, nullptr, number, sizeof(own), true }
#define FIELD(record, own, field, number)                                                                              \
    {                                                                                                                  \
#record, #field, number, offsetof(own, field), HasRequiredType < decltype(record::field),                      \
            decltype(own::field)>()                                                                                    \
    }

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

using Calculator = qmv40_calculator;
using Points = const qmv40_alignment_point*;
template <typename... Types> using Call = std::int32_t(Calculator*, Types...);

static_assert(std::is_same_v<decltype(qmv40_create), std::int32_t(Calculator**)>);
static_assert(std::is_same_v<decltype(qmv40_destroy), void(Calculator*)>);
static_assert(std::is_same_v<decltype(qmv40_version), const char*()>);
static_assert(std::is_same_v<decltype(qmv40_load), Call<const char*>>);
static_assert(std::is_same_v<decltype(qmv40_save), Call<const char*>>);
static_assert(std::is_same_v<decltype(qmv40_enter_geometry), Call<Points, std::size_t, Points, std::size_t>>);
static_assert(std::is_same_v<decltype(qmv40_set_position), Call<double, double>>);
static_assert(std::is_same_v<decltype(qmv40_get_position), Call<double*, double*>>);
static_assert(std::is_same_v<decltype(qmv40_calculate_move), Call<double, double, qmv40_moves*>>);
static_assert(std::is_same_v<decltype(qmv40_start_position), Call<qmv40_xyz*>>);
static_assert(std::is_same_v<decltype(qmv40_pole_sphere), Call<qmv40_xyz*>>);
static_assert(std::is_same_v<decltype(qmv40_last_error), Call<char*, std::size_t, char*, std::size_t>>);
static_assert(std::is_same_v<decltype(qmv40_component), Call<char*, std::size_t>>);

} // namespace

TEST(CLayout, HasTheRequiredSizesOffsetsAndTypes) {
    const std::span layout(c_layout, c_layout_count);
    ASSERT_EQ(layout.size(), std::size(promises));
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const Promise& promise = promises[i];
        const char* const field = promise.field == nullptr ? "" : promise.field;
        EXPECT_STREQ(layout[i].record, promise.record);
        EXPECT_STREQ(layout[i].field == nullptr ? "" : layout[i].field, field);
        EXPECT_EQ(layout[i].number, promise.number) << promise.record << ' ' << field;
        EXPECT_EQ(promise.inComponent, promise.number) << promise.record << ' ' << field;
        EXPECT_TRUE(promise.hasRequiredType) << promise.record << ' ' << field;
    }
}

TEST(CLayout, HasTheCodesOfTheComponent) {
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

/* Pure C99: the layout that a C compiler gives the structs of the header. */

#include "Layout.h"

#include "qmv40.h"

#define SIZE(record) {#record, NULL, sizeof(struct record)}
#define FIELD(record, field) {#record, #field, offsetof(struct record, field)}

const struct field_layout c_layout[] = {
    SIZE(qmv40_xyz),
    FIELD(qmv40_xyz, XPosition),
    FIELD(qmv40_xyz, YPosition),
    FIELD(qmv40_xyz, ZPosition),
    SIZE(qmv40_arc),
    FIELD(qmv40_arc, XOrigin),
    FIELD(qmv40_arc, YOrigin),
    FIELD(qmv40_arc, ZOrigin),
    FIELD(qmv40_arc, iRotationVector),
    FIELD(qmv40_arc, jRotationVector),
    FIELD(qmv40_arc, kRotationVector),
    FIELD(qmv40_arc, RotationAngle),
    SIZE(qmv40_alignment_point),
    FIELD(qmv40_alignment_point, APosition),
    FIELD(qmv40_alignment_point, BPosition),
    FIELD(qmv40_alignment_point, XPosition),
    FIELD(qmv40_alignment_point, YPosition),
    FIELD(qmv40_alignment_point, ZPosition),
    SIZE(qmv40_moves),
    FIELD(qmv40_moves, ApproachUnLockLever),
    FIELD(qmv40_moves, EngageWithUnLockLever),
    FIELD(qmv40_moves, UnLock),
    FIELD(qmv40_moves, DisengageFromUnLockLever),
    FIELD(qmv40_moves, RotateToPeg),
    FIELD(qmv40_moves, MoveToPegAtSafeZ),
    FIELD(qmv40_moves, ApproachPeg),
    FIELD(qmv40_moves, EngageWithPeg),
    FIELD(qmv40_moves, IntermediateAPosition),
    FIELD(qmv40_moves, MoveToBPosition),
    FIELD(qmv40_moves, MoveToAPosition),
    FIELD(qmv40_moves, DisengageFromPeg),
    FIELD(qmv40_moves, DisengageFromPegToSafeZ),
    FIELD(qmv40_moves, RotateToLockLever),
    FIELD(qmv40_moves, MoveToLockLeverAtSafeZ),
    FIELD(qmv40_moves, ApproachLockLever),
    FIELD(qmv40_moves, EngageWithLockLever),
    FIELD(qmv40_moves, Lock),
    FIELD(qmv40_moves, DisengageFromLockLever),
};
const size_t c_layout_count = sizeof c_layout / sizeof c_layout[0];

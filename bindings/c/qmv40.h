/* The head calculator for C and for every language that calls C: C99, and C++.
 *
 * A calculator holds the geometry of one probe head and the head's current angles, and plans the 19 moves with which
 * the machine turns the head. Angles are degrees: A (tilt) 0 to 90, B (swivel) -180 to 180, both in steps of 15.
 * Lengths are in the unit of the captured points, positions in machine coordinates.
 *
 * Every function except qmv40_destroy and qmv40_version returns a code: 0, or one of the failure codes below. No
 * function throws or ends the program. Results are written on success only. Texts and file names are UTF-8; a relative
 * file name is relative to the program's working folder.
 *
 * Threads: any number of threads can have their own calculators. Create, use and destroy a calculator on one thread.
 *
 * The library uses the component beside it. If there is none, it uses the component of the system: on Windows the
 * registered one, on other systems the one that the dynamic linker finds. qmv40_component returns its file.
 *
 * On Windows qmv40_create initialises COM on the calling thread (CoInitializeEx, single-threaded apartment), and
 * qmv40_destroy uninitialises it: the program does not need to. If the program has put the thread into the
 * multi-threaded apartment, the thread stays there. Then place the component beside this library: a registered
 * component would be reached through a proxy, and some proxies cannot transfer captured points. */
#ifndef QMV40_H
#define QMV40_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The failure codes of the component. Other codes are the platform's, for example 0x80004003 (a null pointer). */
#define QMV40_CODE_(last_byte) (-0x7FFFFFFF - 1 + 0x0A000000 + (last_byte))
#define QMV40_E_READ_FROM_FILE QMV40_CODE_(0x01)         /* 0x8A000001 */
#define QMV40_E_WRITE_TO_FILE QMV40_CODE_(0x02)          /* 0x8A000002 */
#define QMV40_E_NO_HEAD_GEOMETRY QMV40_CODE_(0x03)       /* 0x8A000003 */
#define QMV40_E_POSITION_UNKNOWN QMV40_CODE_(0x04)       /* 0x8A000004 */
#define QMV40_E_TOO_FEW_POINTS QMV40_CODE_(0x09)         /* 0x8A000009 */
#define QMV40_E_FIXED_AXIS_MOVED QMV40_CODE_(0x0A)       /* 0x8A00000A */
#define QMV40_E_INVALID_QUADRANT QMV40_CODE_(0x0B)       /* 0x8A00000B */
#define QMV40_E_GEOMETRY_IMPOSSIBLE QMV40_CODE_(0x0C)    /* 0x8A00000C */
#define QMV40_E_GEOMETRY_LIMIT_REACHED QMV40_CODE_(0x0D) /* 0x8A00000D */
#define QMV40_E_INVALID_TARGET QMV40_CODE_(0x0E)         /* 0x8A00000E */

/* A point that the machine moves to in a straight line. */
struct qmv40_xyz {
    double XPosition;
    double YPosition;
    double ZPosition;
};

/* A turn of the machine's position about an axis. With a positive RotationAngle the position moves clockwise when seen
 * from the tip of the rotation vector towards its origin (left-handed). */
struct qmv40_arc {
    double XOrigin; /* a point on the rotation axis */
    double YOrigin;
    double ZOrigin;
    double iRotationVector; /* direction of the rotation axis, unit length */
    double jRotationVector;
    double kRotationVector;
    double RotationAngle; /* degrees, signed */
};

/* A captured point: the machine position while the stylus tip is on the pole sphere and the head is unlocked, and the
 * head's angles at that moment. */
struct qmv40_alignment_point {
    double APosition; /* degrees */
    double BPosition; /* degrees */
    double XPosition;
    double YPosition;
    double ZPosition;
};

/* The moves of one indexing, in the order in which the machine makes them. The peg is the pole sphere. */
struct qmv40_moves {
    struct qmv40_xyz ApproachUnLockLever;
    struct qmv40_xyz EngageWithUnLockLever;
    struct qmv40_arc UnLock;
    struct qmv40_xyz DisengageFromUnLockLever;
    struct qmv40_arc RotateToPeg;
    struct qmv40_xyz MoveToPegAtSafeZ;
    struct qmv40_xyz ApproachPeg;
    struct qmv40_xyz EngageWithPeg;
    struct qmv40_arc IntermediateAPosition;
    struct qmv40_arc MoveToBPosition;
    struct qmv40_arc MoveToAPosition;
    struct qmv40_xyz DisengageFromPeg;
    struct qmv40_xyz DisengageFromPegToSafeZ;
    struct qmv40_arc RotateToLockLever;
    struct qmv40_xyz MoveToLockLeverAtSafeZ;
    struct qmv40_xyz ApproachLockLever;
    struct qmv40_xyz EngageWithLockLever;
    struct qmv40_arc Lock;
    struct qmv40_xyz DisengageFromLockLever;
};

typedef struct qmv40_calculator qmv40_calculator; /* NOLINT(modernize-use-using): C */

/* A new calculator, without a geometry. After a failure *calculator is null, and qmv40_last_error(NULL, ...) on the
 * same thread returns the failure. */
int32_t qmv40_create(qmv40_calculator** calculator);
/* Frees a calculator. Null is ignored. */
void qmv40_destroy(qmv40_calculator* calculator);
/* The version of this library: "1.0.0". */
const char* qmv40_version(void);

/* Replaces the head geometry by the one saved in a file. */
int32_t qmv40_load(qmv40_calculator* calculator, const char* file);
int32_t qmv40_save(qmv40_calculator* calculator, const char* file);
/* Computes the head geometry from points captured while A alone was turned, then while B alone was turned; at least
 * four each. */
int32_t qmv40_enter_geometry(qmv40_calculator* calculator, const struct qmv40_alignment_point* a_points, size_t a_count,
                             const struct qmv40_alignment_point* b_points, size_t b_count);

/* Sets the head's current angles. If they are refused, the position is unknown. */
int32_t qmv40_set_position(qmv40_calculator* calculator, double a, double b);
/* The head's angles after the last qmv40_set_position or qmv40_calculate_move. */
int32_t qmv40_get_position(qmv40_calculator* calculator, double* a, double* b);
/* The moves that turn the head from its current position to (a, b), which becomes the current position. A refused
 * target changes nothing. */
int32_t qmv40_calculate_move(qmv40_calculator* calculator, double a, double b, struct qmv40_moves* moves);
/* The first point of any indexing from the current position. */
int32_t qmv40_start_position(qmv40_calculator* calculator, struct qmv40_xyz* position);
/* The centre of the pole sphere, which is the head centre of the geometry. */
int32_t qmv40_pole_sphere(qmv40_calculator* calculator, struct qmv40_xyz* position);

/* The code of the last failed call with this calculator (0 if none has failed), and its texts. Each text is cut to the
 * size of its buffer in bytes and ends with a zero. A buffer can be null with the size 0. 512 bytes are enough for
 * every text of the component. */
int32_t qmv40_last_error(qmv40_calculator* calculator, char* source, size_t source_size, char* description,
                         size_t description_size);
/* The file of the component that this calculator uses, cut in the same way. */
int32_t qmv40_component(qmv40_calculator* calculator, char* file, size_t size);

#ifdef __cplusplus
}
#endif

#endif

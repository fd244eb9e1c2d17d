/* plan <geometry file>: plans an indexing through the C interface. C99; the same on Linux and on Windows.
 *
 * Build: cc -std=c99 plan.c $(pkg-config --cflags --libs qmv40) -lm */

#include <qmv40.h>

#include <math.h>
#include <stdio.h>

/* Rounded so that every language prints the same text, never a negative zero. */
static void show_numbers(const double* numbers, int count) {
    for (int i = 0; i < count; ++i) printf(" %.3f", floor(numbers[i] * 1000.0 + 0.5) / 1000.0);
    printf("\n");
}

static void show_position(qmv40_calculator* head) {
    double position[2] = {0.0, 0.0};
    qmv40_get_position(head, &position[0], &position[1]);
    printf("position");
    show_numbers(position, 2);
}

static void show_line(int number, const char* name, const struct qmv40_xyz* point) {
    const double numbers[] = {point->XPosition, point->YPosition, point->ZPosition};
    printf("%d %s", number, name);
    show_numbers(numbers, 3);
}

static void show_arc(int number, const char* name, const struct qmv40_arc* arc) {
    const double numbers[] = {arc->XOrigin,         arc->YOrigin,         arc->ZOrigin,      arc->iRotationVector,
                              arc->jRotationVector, arc->kRotationVector, arc->RotationAngle};
    printf("%d %s", number, name);
    show_numbers(numbers, 7);
}

static void show_plan(const struct qmv40_moves* plan) {
    show_line(1, "ApproachUnLockLever", &plan->ApproachUnLockLever);
    show_line(2, "EngageWithUnLockLever", &plan->EngageWithUnLockLever);
    show_arc(3, "UnLock", &plan->UnLock);
    show_line(4, "DisengageFromUnLockLever", &plan->DisengageFromUnLockLever);
    show_arc(5, "RotateToPeg", &plan->RotateToPeg);
    show_line(6, "MoveToPegAtSafeZ", &plan->MoveToPegAtSafeZ);
    show_line(7, "ApproachPeg", &plan->ApproachPeg);
    show_line(8, "EngageWithPeg", &plan->EngageWithPeg);
    show_arc(9, "IntermediateAPosition", &plan->IntermediateAPosition);
    show_arc(10, "MoveToBPosition", &plan->MoveToBPosition);
    show_arc(11, "MoveToAPosition", &plan->MoveToAPosition);
    show_line(12, "DisengageFromPeg", &plan->DisengageFromPeg);
    show_line(13, "DisengageFromPegToSafeZ", &plan->DisengageFromPegToSafeZ);
    show_arc(14, "RotateToLockLever", &plan->RotateToLockLever);
    show_line(15, "MoveToLockLeverAtSafeZ", &plan->MoveToLockLeverAtSafeZ);
    show_line(16, "ApproachLockLever", &plan->ApproachLockLever);
    show_line(17, "EngageWithLockLever", &plan->EngageWithLockLever);
    show_arc(18, "Lock", &plan->Lock);
    show_line(19, "DisengageFromLockLever", &plan->DisengageFromLockLever);
}

/* Prints the code and the description of the last refused call. Returns the exit code of the program. */
static int show_failure(qmv40_calculator* head) {
    char description[512];
    const unsigned long code = (unsigned long)qmv40_last_error(head, NULL, 0, description, sizeof description);
    printf("refused 0x%08lX: %s\n", code & 0xFFFFFFFFUL, description);
    return 1;
}

static int plan(qmv40_calculator* head, const char* geometry_file) {
    struct qmv40_moves moves;
    if (qmv40_load(head, geometry_file) != 0 || qmv40_set_position(head, 0.0, 0.0) != 0) return show_failure(head);
    if (qmv40_calculate_move(head, 50.0, 90.0, &moves) != 0) show_failure(head); /* 50 is not a multiple of 15 */
    show_position(head);
    if (qmv40_calculate_move(head, 45.0, 90.0, &moves) != 0) return show_failure(head);
    show_position(head);
    show_plan(&moves);
    return 0;
}

int main(int count, char** arguments) {
    qmv40_calculator* head = NULL;
    int result;
    if (count != 2) return 2;
    if (qmv40_create(&head) != 0) return show_failure(NULL);
    result = plan(head, arguments[1]);
    qmv40_destroy(head);
    return result;
}

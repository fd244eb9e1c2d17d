#ifndef LAYOUT_H
#define LAYOUT_H

/* The sizes and offsets that a C compiler gives the structs of the C interface, for the tests in C++. */

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

struct field_layout {
    const char* record;
    const char* field; /* null: the record itself */
    size_t number;     /* of bytes: the field's offset, or the record's size */
};

extern const struct field_layout c_layout[];
extern const size_t c_layout_count;

#ifdef __cplusplus
}
#endif

#endif

/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * What a file of exhibits is written with. The gallery compiles it, and prints what stands
 * in it.
 *
 * The file's first comment is the family's title and a sentence. An exhibit is a comment,
 * its title and what to say of it, EXHIBIT(family_name, how to show it), and a block of C
 * that leaves the result in `out`. Names and helpers are those of try.h, and the functions
 * and records above it in the file: the page prints those that an exhibit uses with it.
 * START and STOP stand round what is timed.
 */
#ifndef PXK_EXHIBIT_H
#define PXK_EXHIBIT_H

#define TRY_PART
#include "try.h"

#ifdef __cplusplus
#error "exhibits are C, as what the page shows"
#endif

/*
 * How to show it is one of
 *   PICTURE        out
 *   DETAIL         a part of out, a pixel for a pixel: patterns must not be scaled
 *   PAIR(before)   the same part of one of the pictures to start from, or of another
 * exhibit's result, and of out TEXT           what the code prints REPORTS        what the
 * library reports
 */
#define EXHIBIT(name, view)                                                                \
    void name(void);                                                                       \
    void name(void)

void startClock(void);
void stopClock(void);
#define START startClock()
#define STOP stopClock()

#if defined(__GNUC__) && !defined(_WIN32)
__attribute__((format(printf, 1, 2)))
#endif
int printForPage(const char* format, ...);
#define printf printForPage

#endif

/* SPDX-License-Identifier: BSD-2-Clause */
/* What GCC's C++ library, which Debian builds for glibc, wants beyond musl; see scripts/musl.sh. */
#include <stddef.h>

char __libc_single_threaded;

unsigned arc4random(void)
{
    return 4; /* no test draws random numbers there */
}

/* -1: frames of exceptions are searched for in the old way. */
int _dl_find_object(void* address, void* result)
{
    (void)address;
    (void)result;
    return -1;
}

/* What belongs to the one thread lives until the program ends. */
int __cxa_thread_atexit_impl(void (*destroy)(void*), void* record, void* library)
{
    (void)destroy;
    (void)record;
    (void)library;
    return 0;
}

extern const unsigned short** __ctype_b_loc(void);
extern const int** __ctype_tolower_loc(void);
extern const int** __ctype_toupper_loc(void);

/* The C locale as glibc's record, whose tables streams read. To musl the nulls in front of them are the C locale, too.
 */
void* __wrap___newlocale(int mask, const char* name, void* base)
{
    static struct {
        void* categories[13];
        const unsigned short* kinds;
        const int *lower, *upper;
        const char* names[13];
    } locale;
    size_t i;
    (void)mask;
    (void)name;
    (void)base;
    locale.kinds = *__ctype_b_loc();
    locale.lower = *__ctype_tolower_loc();
    locale.upper = *__ctype_toupper_loc();
    for (i = 0; i < 13; ++i) locale.names[i] = "C";
    return &locale;
}

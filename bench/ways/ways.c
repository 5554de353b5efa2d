/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * Times the same calls however the library was reached: linked by name, statically, or opened by a path (the first
 * argument, where WAYS_BY_PATH is defined). Prints a line a case: name and the least nanoseconds of a call.
 */
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include <pxk/pxk.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#define WAYS_FUNCTIONS(DO)                                                                                             \
    DO(pxkCreateImageHeader)                                                                                           \
    DO(pxkAllocateImage)                                                                                               \
    DO(pxkAllocateImageFP)                                                                                             \
    DO(pxkGetErrStatus)                                                                                                \
    DO(pxkSet)                                                                                                         \
    DO(pxkAdd)                                                                                                         \
    DO(pxkMultiply)                                                                                                    \
    DO(pxkThreshold)                                                                                                   \
    DO(pxkMedianFilter)                                                                                                \
    DO(pxkBlur)                                                                                                        \
    DO(pxkMaxFilter)                                                                                                   \
    DO(pxkFixedFilter)                                                                                                 \
    DO(pxkResize)                                                                                                      \
    DO(pxkRGB2HSV)                                                                                                     \
    DO(pxkRealFft2D)

#define WAYS_MEMBER(NAME) __typeof__(&NAME) NAME;
static struct {
    WAYS_FUNCTIONS(WAYS_MEMBER)
} pxk;

#ifdef WAYS_BY_PATH
static void* find(const char* path, const char* name)
{
#ifdef _WIN32
    void* const found = (void*)GetProcAddress(LoadLibraryA(path), name);
#else
    void* const found = dlsym(dlopen(path, RTLD_NOW | RTLD_LOCAL), name);
#endif
    if (found == NULL) fprintf(stderr, "%s: no %s\n", path, name), exit(1);
    return found;
}
#define WAYS_FIND(NAME) *(void**)&pxk.NAME = find(path, #NAME);
#else
#define WAYS_FIND(NAME) pxk.NAME = NAME;
#endif

enum { SIDE = 512 };

static PxkImage *gray8, *other8, *out8, *gray16, *out16, *colour, *hsv, *twice, *bits, *spectrum;

static PxkImage* image(int32_t depth, int32_t nChannels, int32_t side)
{
    PxkImage* const made =
        pxk.pxkCreateImageHeader(nChannels, 0, depth, nChannels == 3 ? "RGB" : "GRAY", nChannels == 3 ? "RGB" : "GRAY",
                                 PXK_DATA_ORDER_PIXEL, 0, 32, side, side, NULL, NULL, NULL, NULL);
    uint32_t state = 1;
    int32_t i;
    if (depth == PXK_DEPTH_32F) {
        pxk.pxkAllocateImageFP(made, 0, 0);
    } else {
        pxk.pxkAllocateImage(made, 0, 0);
    }
    if (made == NULL || made->imageData == NULL) fputs("no memory\n", stderr), exit(1);
    for (i = 0; i < made->imageSize; ++i) {
        state = state * 1664525 + 1013904223;
        ((uint8_t*)made->imageData)[i] = (uint8_t)(state >> 24);
    }
    return made;
}

static void set(void)
{
    pxk.pxkSet(out8, 7);
}
static void add(void)
{
    pxk.pxkAdd(gray8, other8, out8);
}
static void multiply(void)
{
    pxk.pxkMultiply(gray8, other8, out8);
}
static void threshold(void)
{
    pxk.pxkThreshold(gray8, bits, 100);
}
static void median(void)
{
    pxk.pxkMedianFilter(gray16, out16, 5, 5, 2, 2);
}
static void blur(void)
{
    pxk.pxkBlur(gray8, out8, 15, 15, 7, 7);
}
static void maximum(void)
{
    pxk.pxkMaxFilter(gray8, out8, 15, 15, 7, 7);
}
static void gauss(void)
{
    pxk.pxkFixedFilter(gray8, out8, 10);
}
static void resize(void)
{
    pxk.pxkResize(gray8, twice, 2, 1, 2, 1, 1);
}
static void hue(void)
{
    pxk.pxkRGB2HSV(colour, hsv);
}
static void transform(void)
{
    pxk.pxkRealFft2D(gray8, spectrum, PXK_FFT_FORWARD | PXK_FFT_USE_FLOAT);
}

static const struct {
    const char* name;
    void (*call)(void);
} cases[] = {
    { "set", set },
    { "add", add },
    { "multiply", multiply },
    { "threshold", threshold },
    { "median 5x5 16U", median },
    { "blur 15x15", blur },
    { "maximum 15x15", maximum },
    { "fixed filter", gauss },
    { "resize linear", resize },
    { "RGB to HSV", hue },
    { "Fourier", transform },
};

static double now(void)
{
#ifdef _WIN32
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return 1e9 * (double)count.QuadPart / (double)frequency.QuadPart;
#else
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return 1e9 * (double)time.tv_sec + (double)time.tv_nsec;
#endif
}

/* The least of many runs of about a millisecond each. */
static double least(void (*call)(void))
{
    double best = 1e300, start, each;
    int run, i, count;
    start = now();
    call();
    each = now() - start;
    count = each > 1e6 ? 1 : (int)(1e6 / (each + 1)) + 1;
    for (run = 0; run < 40; ++run) {
        start = now();
        for (i = 0; i < count; ++i) call();
        each = (now() - start) / count;
        if (each < best) best = each;
    }
    return best;
}

int main(int argc, char** argv)
{
    size_t k;
#ifdef WAYS_BY_PATH
    const char* const path = argc > 1 ? argv[1] : "libpxk.so";
#else
    (void)argc, (void)argv;
#endif
    WAYS_FUNCTIONS(WAYS_FIND)
    gray8 = image(PXK_DEPTH_8U, 1, SIDE), other8 = image(PXK_DEPTH_8U, 1, SIDE), out8 = image(PXK_DEPTH_8U, 1, SIDE);
    gray16 = image(PXK_DEPTH_16U, 1, SIDE), out16 = image(PXK_DEPTH_16U, 1, SIDE);
    colour = image(PXK_DEPTH_8U, 3, SIDE), hsv = image(PXK_DEPTH_8U, 3, SIDE);
    twice = image(PXK_DEPTH_8U, 1, 2 * SIDE), bits = image(PXK_DEPTH_1U, 1, SIDE);
    spectrum = image(PXK_DEPTH_32F, 1, SIDE);
    for (k = 0; k < sizeof cases / sizeof *cases; ++k) printf("%s\t%.0f\n", cases[k].name, least(cases[k].call));
    if (pxk.pxkGetErrStatus() != PXK_StsOk) return fputs("a call failed\n", stderr), 1;
    return 0;
}

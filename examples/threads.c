/* SPDX-License-Identifier: BSD-2-Clause */
/*
 * The library starts no threads; a program that has several processors cuts its picture into bands, one a thread.
 *
 * Each thread has headers and a region of its own over the same pixels. Bands of rows share no byte of the destination,
 * and a filter reads across the edge of a band as if there were none, so the result is that of one call.
 */
#include <pxk/pxk.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <windows.h>
typedef HANDLE Thread;
#define THREAD_RESULT DWORD WINAPI
#else
#include <pthread.h>
#include <time.h>
typedef pthread_t Thread;
#define THREAD_RESULT void*
#endif

enum { width = 2000, height = 1500, mostThreads = 16 };

typedef struct Band {
    PxkImage source, result;
    PxkROI rows;
    int32_t status;
} Band;

static THREAD_RESULT smoothBand(void* argument)
{
    Band* band = (Band*)argument;
    pxkSetErrMode(PXK_ErrModeParent); /* status, mode and handler are each thread's own */
    pxkRedirectError(pxkStdErrReport);
    pxkMedianFilter(&band->source, &band->result, 21, 21, 10, 10);
    band->status = pxkGetErrStatus();
    return 0;
}

static int startThread(Thread* thread, Band* band)
{
#ifdef _WIN32
    *thread = CreateThread(NULL, 0, smoothBand, band, 0, NULL);
    return *thread != NULL;
#else
    return pthread_create(thread, NULL, smoothBand, band) == 0;
#endif
}

static void joinThread(Thread thread)
{
#ifdef _WIN32
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
#else
    pthread_join(thread, NULL);
#endif
}

static double seconds(void)
{
#ifdef _WIN32
    return GetTickCount() / 1000.0;
#else
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec + now.tv_nsec / 1e9;
#endif
}

static int smooth(const PxkImage* source, const PxkImage* result, int threads)
{
    static Band bands[mostThreads];
    Thread ids[mostThreads];
    int k, started = 0, isGood = 1;
    for (k = 0; k < threads; ++k) {
        Band* band = &bands[k];
        const int first = height * k / threads, end = height * (k + 1) / threads;
        pxkSetROI(&band->rows, 0, 0, first, width, end - first);
        band->source = *source;
        band->result = *result;
        band->source.roi = band->result.roi = &band->rows;
        if (!startThread(&ids[k], band)) break;
        ++started;
    }
    for (k = 0; k < started; ++k) {
        joinThread(ids[k]);
        isGood = isGood && bands[k].status == PXK_StsOk;
    }
    return isGood && started == threads;
}

int main(int argc, char** argv)
{
    const int threads = argc > 1 ? atoi(argv[1]) : 2;
    PxkImage *source, *one, *many;
    double begin, alone, together;
    int isSame;

    if (threads < 1 || threads > mostThreads) {
        fprintf(stderr, "usage: example_threads [1 to %d]\n", mostThreads);
        return EXIT_FAILURE;
    }
    source = pxkCreateImageJaehne(PXK_DEPTH_8U, width, height);
    one = pxkCloneImage(source);
    many = pxkCloneImage(source);
    if (!source || !one || !many) return EXIT_FAILURE;

    begin = seconds();
    if (!smooth(source, one, 1)) return EXIT_FAILURE;
    alone = seconds() - begin;
    begin = seconds();
    if (!smooth(source, many, threads)) return EXIT_FAILURE;
    together = seconds() - begin;

    isSame = memcmp(one->imageData, many->imageData, one->imageSize) == 0;
    printf("1 thread %.1f ms, %d threads %.1f ms: %.2f times as fast, %s result\n", 1000 * alone, threads,
           1000 * together, alone / together, isSame ? "the same" : "ANOTHER");
    pxkDeallocate(source, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(one, PXK_FREE_HEADER | PXK_FREE_DATA);
    pxkDeallocate(many, PXK_FREE_HEADER | PXK_FREE_DATA);
    return isSame ? EXIT_SUCCESS : EXIT_FAILURE;
}

/* SPDX-License-Identifier: BSD-2-Clause */
// What each thread has of its own.
#pragma once

template <class T> T& ofThread()
{
#ifdef _WIN32
    // MinGW frees a thread's variables before it runs their destructors, so this one has none to run.
    static thread_local T* const own = new T;
    return *own;
#else
    static thread_local T own;
    return own;
#endif
}

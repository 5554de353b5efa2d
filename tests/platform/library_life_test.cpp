// SPDX-License-Identifier: BSD-2-Clause
// Attach and detach of processes and threads, on a second copy of the library that is loaded and unloaded.
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>
#endif

#include "pxk/pxk.h"

namespace {

#ifdef _WIN32
const auto openCopy = [] { return LoadLibraryA(PXK_LIBRARY_COPY); };
const auto closeCopy = FreeLibrary;
const auto symbolOf = GetProcAddress;
#else
const auto openCopy = [] { return dlopen(PXK_LIBRARY_COPY, RTLD_NOW | RTLD_LOCAL); };
const auto closeCopy = dlclose;
const auto symbolOf = dlsym;
#endif

class Loaded {
public:
    ~Loaded() { closeCopy(handle); }
    int32_t getStatus() const { return function<int32_t (*)()>("pxkGetErrStatus")(); }
    void setStatus(int32_t status) const { function<void (*)(int32_t)>("pxkSetErrStatus")(status); }
    const decltype(openCopy()) handle = openCopy();

private:
    template <class F> F function(const char* name) const
    {
        return reinterpret_cast<F>(reinterpret_cast<void*>(symbolOf(handle, name)));
    }
};

// A process has some 1000 slots. Were they not given back, the contexts would be strange or missing in the end.
TEST(LibraryLife, slotsAreGivenBack)
{
    for (int i = 0; i < 1200; ++i) {
        const Loaded library;
        ASSERT_NE(library.handle, nullptr) << i;
        ASSERT_EQ(library.getStatus(), 0) << i;
        library.setStatus(-5);
        ASSERT_EQ(library.getStatus(), -5) << i;
        int32_t ofThread = 0;
        if (i % 100 == 0) std::thread([&] { ofThread = library.getStatus(); }).join();
        ASSERT_EQ(ofThread, 0) << i;
    }
    EXPECT_EQ(pxkGetErrStatus(), 0);
}

TEST(LibraryLife, threadOlderThanTheLibrary)
{
    std::promise<const Loaded*> loading;
    int32_t before = 1, after = 1;
    std::thread older([&] {
        const Loaded* library = loading.get_future().get();
        before = library->getStatus();
        library->setStatus(-4);
        after = library->getStatus();
    });
    const Loaded library;
    loading.set_value(&library);
    older.join();
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, -4);
    EXPECT_EQ(library.getStatus(), 0);
}

void outliveTheLibrary()
{
    std::promise<void> use, unloading;
    auto library = std::make_unique<Loaded>();
    std::thread thread([&] {
        library->setStatus(-4);
        use.set_value();
        unloading.get_future().wait();
    });
    use.get_future().wait();
    library.reset();
    unloading.set_value();
    thread.join();
    _exit(0);
}

// Its end must not call what is gone. Its context is lost: the unloading thread can reach no other than its own.
TEST(LibraryLifeDeathTest, threadOutlivesTheLibrary)
{
    EXPECT_EXIT(outliveTheLibrary(), testing::ExitedWithCode(0), "");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // these have an allocator of their own
size_t bytesInUse()
{
#ifdef _WIN32
    size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
    HeapUnlock(GetProcessHeap());
    return bytes;
#else
    return mallinfo2().uordblks;
#endif
}

TEST(LibraryLife, threadsTakeTheirContextsAlong)
{
    const auto runThreads = [] {
        for (int i = 0; i < 500; ++i) std::thread([] { pxkSetErrStatus(-5); }).join();
    };
    runThreads(); // what the system keeps of its first threads
    const size_t before = bytesInUse();
    runThreads();
    EXPECT_LT(bytesInUse(), before + 500 * 1024); // a context has more than 1500 bytes
}
#endif

} // namespace

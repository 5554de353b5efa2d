// SPDX-License-Identifier: BSD-2-Clause
// Attach and detach of processes and threads, on a second copy of the library that is loaded and unloaded.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
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

// A copy has another name, so the loader takes it for another library.
std::string copyOfTheLibrary()
{
#ifdef _WIN32
    char original[MAX_PATH], folder[MAX_PATH], copy[MAX_PATH];
    GetModuleFileNameA(GetModuleHandleA("pxkQ6.dll"), original, MAX_PATH);
    GetTempPathA(MAX_PATH, folder);
    GetTempFileNameA(folder, "pxk", 0, copy);
    return CopyFileA(original, copy, FALSE) ? copy : "";
#else
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&pxkError), &info) == 0) return "";
    std::string copy = testing::TempDir() + "pxkcopyXXXXXX";
    const int file = mkstemp(copy.data());
    if (file == -1) return "";
    std::string block(1 << 16, '\0');
    FILE* const original = fopen(info.dli_fname, "rb");
    for (size_t count; (count = fread(block.data(), 1, block.size(), original)) > 0;)
        if (write(file, block.data(), count) != static_cast<ssize_t>(count)) return "";
    fclose(original);
    close(file);
    return copy;
#endif
}

class Copy {
public:
    Copy()
        : path(copyOfTheLibrary())
    {
    }
    ~Copy() { remove(path.c_str()); }
    const std::string path;
};

class Loaded {
public:
    explicit Loaded(const std::string& path)
#ifdef _WIN32
        : handle(LoadLibraryA(path.c_str()))
#else
        : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
#endif
    {
    }
    ~Loaded()
    {
#ifdef _WIN32
        FreeLibrary(handle);
#else
        dlclose(handle);
#endif
    }
    bool isLoaded() const
    {
        return handle != nullptr;
    }
    int32_t getStatus() const
    {
        return function<int32_t (*)()>("pxkGetErrStatus")();
    }
    void setStatus(int32_t status) const
    {
        function<void (*)(int32_t)>("pxkSetErrStatus")(status);
    }
    template <class F> F function(const char* name) const
    {
#ifdef _WIN32
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(handle, name)));
#else
        return reinterpret_cast<F>(dlsym(handle, name));
#endif
    }

private:
#ifdef _WIN32
    HMODULE handle;
#else
    void* handle;
#endif
};

// A process has some 1000 slots. Were they not given back, the contexts would be strange or missing in the end.
TEST(LibraryLife, slotsAreGivenBack)
{
    const Copy copy;
    for (int i = 0; i < 1200; ++i) {
        const Loaded library(copy.path);
        ASSERT_TRUE(library.isLoaded()) << i;
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
    const Copy copy;
    std::promise<const Loaded*> loading;
    int32_t before = 1, after = 1;
    std::thread older([&] {
        const Loaded* library = loading.get_future().get();
        before = library->getStatus();
        library->setStatus(-4);
        after = library->getStatus();
    });
    const Loaded library(copy.path);
    loading.set_value(&library);
    older.join();
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, -4);
    EXPECT_EQ(library.getStatus(), 0);
}

void outliveTheLibrary(const std::string& path)
{
    std::promise<void> use, unloading;
    auto library = std::make_unique<Loaded>(path);
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
    const Copy copy;
    EXPECT_EXIT(outliveTheLibrary(copy.path), testing::ExitedWithCode(0), "");
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

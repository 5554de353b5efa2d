// SPDX-License-Identifier: BSD-2-Clause
// The library (a shared object named by PXK_LIB) beside independent C and C++ libraries: the same work, in one process,
// in one thread, in turn. See README.md.
//
// The library is opened by its path, so that one program measures any build of it.
//
// usage: peers [-o rows.tsv] [-r reps] [-q] [FILTER ...]
//   FILTER: only cases whose "group/name size" contains one of the texts
//   -q: a quick run (3 repetitions), for trying the harness out
#include <dlfcn.h>
#include <fftw3.h>
#include <leptonica/allheaders.h>
#include <libyuv.h>
#include <libyuv/scale_rgb.h>
#include <malloc.h>
#include <pixman.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <vips/vips.h>

#include <vips/vector.h> // needs the former

#include <zimg.h>

#include <pxk/pxk.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

enum : int32_t {
    D1U = PXK_DEPTH_1U,
    D8U = PXK_DEPTH_8U,
    D16U = PXK_DEPTH_16U,
    D32F = PXK_DEPTH_32F,
    D16S = PXK_DEPTH_16S
};
enum {
    PIXEL = PXK_DATA_ORDER_PIXEL,
    PLANE = PXK_DATA_ORDER_PLANE,
    CLAMP = PXK_EDGE_CLAMP,
    NN = PXK_INTER_NN,
    LINEAR = PXK_INTER_LINEAR,
    CUBIC = PXK_INTER_CUBIC
};

typedef void (*F2)(PxkImage*, PxkImage*);
typedef void (*F3)(PxkImage*, PxkImage*, PxkImage*);
typedef void (*F2I)(PxkImage*, PxkImage*, int32_t);
typedef void (*F1I)(PxkImage*, int32_t);
typedef void (*F1F)(PxkImage*, float);

static void* gLib = nullptr;
template <class T> static T fn(const char* name)
{
    return gLib ? (T)dlsym(gLib, name) : nullptr;
}
// a symbol looked up once at its place of use, so that no lookup is inside the timing
#define FN(name, ...)                                                                                                  \
    ([]() {                                                                                                            \
        using FT_ = __VA_ARGS__;                                                                                       \
        static FT_ const p_ = fn<FT_>(name);                                                                           \
        return p_;                                                                                                     \
    }())

// memory and images
static void* mem(size_t n)
{
    void* p = nullptr;
    if (posix_memalign(&p, 64, n + 256)) abort();
    memset(p, 0, n + 256);
    return p;
}
struct Buf { // an aligned block freed with its owner
    uint8_t* p = nullptr;
    size_t n = 0;
    explicit Buf(size_t n_)
        : p((uint8_t*)mem(n_))
        , n(n_)
    {
    }
    Buf(const Buf&) = delete;
    ~Buf() { free(p); }
    template <class T> T* as() { return (T*)p; }
};
typedef std::shared_ptr<Buf> B;
static B buf(size_t n)
{
    return std::make_shared<Buf>(n);
}

struct Img {
    PxkImage h;
    PxkROI r;
    B b;
    int step() const { return h.widthStep; }
    uint8_t* d() const { return (uint8_t*)h.imageData; }
    template <class T> T* as() const { return (T*)h.imageData; }
};
typedef std::shared_ptr<Img> I;
static I img(int w, int hh, int nch, int32_t depth, int order = PIXEL, const char* model = nullptr,
             const char* seq = nullptr, int align = 32, bool roi = false)
{
    I im = std::make_shared<Img>();
    memset(&im->h, 0, sizeof im->h);
    PxkImage& h = im->h;
    h.headerSize = sizeof(PxkImage);
    h.nChannels = nch;
    h.depth = depth;
    strncpy(h.colorModel, model ? model : nch == 1 ? "GRAY" : nch == 3 ? "RGB" : "RGBA", 4);
    strncpy(h.channelSeq, seq ? seq : nch == 1 ? "G" : nch == 3 ? "RGB" : "RGBA", 4);
    h.dataOrder = order;
    h.align = align;
    h.width = w;
    h.height = hh;
    int64_t bits = (int64_t)w * (depth & 0x7fffffff) * (order == PIXEL ? nch : 1);
    h.widthStep = (int32_t)((bits + 8 * align - 1) / (8 * align) * align);
    h.imageSize = h.widthStep * hh * (order == PLANE ? nch : 1);
    for (int i = 0; i < 4; i++) h.borderMode[i] = CLAMP;
    im->b = buf((size_t)h.imageSize);
    h.imageData = im->b->p;
    if (roi) {
        im->r = PxkROI { 0, 0, 0, w, hh };
        h.roi = &im->r;
    }
    return im;
}

// picture content: smooth octaves plus a little noise, so that filters, dithers and palettes see something real
static uint32_t gSeed = 12345;
static uint32_t rnd()
{
    return gSeed = gSeed * 1664525u + 1013904223u, gSeed >> 8;
}
static const std::vector<float>& field(int w, int h, uint32_t seed)
{
    static std::map<std::vector<int>, std::vector<float>> made;
    std::vector<float>& f = made[{ w, h, (int)seed }];
    if (!f.empty()) return f;
    gSeed = seed;
    f.assign((size_t)w * h, 128.f);
    const int per[4] = { 256, 64, 16, 4 };
    const float amp[4] = { 70, 35, 16, 8 };
    for (int o = 0; o < 4; o++) {
        int p = per[o], gw = w / p + 3, gh = h / p + 3;
        std::vector<float> g((size_t)gw * gh);
        for (auto& v : g) v = ((rnd() & 0xffff) / 32768.f - 1.f) * amp[o];
        for (int y = 0; y < h; y++) {
            int gy = y / p;
            float fy = (y % p) / (float)p;
            for (int x = 0; x < w; x++) {
                int gx = x / p;
                float fx = (x % p) / (float)p;
                const float* q = &g[(size_t)gy * gw + gx];
                f[(size_t)y * w + x] +=
                    (q[0] * (1 - fx) + q[1] * fx) * (1 - fy) + (q[gw] * (1 - fx) + q[gw + 1] * fx) * fy;
            }
        }
    }
    for (auto& v : f) v += (int)(rnd() % 13) - 6;
    return f;
}
static float clip(float v, float a, float b)
{
    return v < a ? a : v > b ? b : v;
}
static void fill(const I& im, uint32_t seed)
{ // every channel its own field, mixed so that channels correlate
    const PxkImage& h = im->h;
    int w = h.width, hh = h.height, nch = h.nChannels;
    const std::vector<float>& base = field(w, hh, seed);
    for (int c = 0; c < nch; c++) {
        const std::vector<float>& f = field(w, hh, seed + 77u * c);
        for (int y = 0; y < hh; y++) {
            uint8_t* row =
                im->d() + (size_t)y * h.widthStep + (h.dataOrder == PLANE ? (size_t)c * h.widthStep * hh : 0);
            int st = h.dataOrder == PLANE ? 1 : nch, o = h.dataOrder == PLANE ? 0 : c;
            for (int x = 0; x < w; x++) {
                float v = c ? 0.6f * base[(size_t)y * w + x] + 0.4f * f[(size_t)y * w + x] : f[(size_t)y * w + x];
                v = clip(v, 0, 255);
                if (h.depth == D8U)
                    row[x * st + o] = (uint8_t)v;
                else if (h.depth == D16U)
                    ((uint16_t*)row)[x * st + o] = (uint16_t)(v * 257.f);
                else if (h.depth == D16S)
                    ((int16_t*)row)[x * st + o] = (int16_t)((v - 128) * 255.f);
                else if (h.depth == D32F)
                    ((float*)row)[x * st + o] = v;
                else if (h.depth == D1U) {
                    if (v >= 128)
                        row[x >> 3] |= 0x80 >> (x & 7);
                    else
                        row[x >> 3] &= ~(0x80 >> (x & 7));
                }
            }
        }
    }
}
static I pic(int w, int h, int nch, int32_t depth, uint32_t seed = 1, int order = PIXEL, int align = 32)
{
    I im = img(w, h, nch, depth, order, nullptr, nullptr, align);
    fill(im, seed);
    return im;
}

// Leptonica images with the same content. 8 and 1 bits keep their bytes but for the byte order of words;
// RGB becomes 32 bits a pixel, which is Leptonica's only colour layout.
typedef std::shared_ptr<Pix> LP;
static LP hold(PIX* p)
{
    return LP(p, [](Pix* q) { pixDestroy(&q); });
}
static LP lept(const I& im)
{
    const PxkImage& h = im->h;
    int d = h.nChannels == 3 ? 32 : (int)h.depth;
    PIX* p = pixCreate(h.width, h.height, d);
    l_uint32* data = pixGetData(p);
    int wpl = pixGetWpl(p);
    for (int y = 0; y < h.height; y++) {
        const uint8_t* s = im->d() + (size_t)y * h.widthStep;
        if (d == 32)
            for (int x = 0; x < h.width; x++)
                composeRGBPixel(s[3 * x], s[3 * x + 1], s[3 * x + 2], &data[(size_t)y * wpl + x]);
        else
            memcpy(data + (size_t)y * wpl, s, std::min<size_t>(4 * (size_t)wpl, h.widthStep));
    }
    if (d != 32) pixEndianByteSwap(p);
    return hold(p);
}
static VipsImage* vimg(const I& im)
{
    const PxkImage& h = im->h;
    VipsBandFormat f = h.depth == D8U ? VIPS_FORMAT_UCHAR
        : h.depth == D16U             ? VIPS_FORMAT_USHORT
        : h.depth == D16S             ? VIPS_FORMAT_SHORT
                                      : VIPS_FORMAT_FLOAT;
    VipsImage* v = vips_image_new_from_memory(h.imageData, (size_t)h.imageSize, h.width, h.height, h.nChannels, f);
    v->Type = h.nChannels == 3 ? VIPS_INTERPRETATION_sRGB : VIPS_INTERPRETATION_B_W;
    return v;
}
typedef std::function<int(VipsImage**)> VOp;
static std::function<void()> vrun(VOp op)
{ // build the pipeline, compute every pixel into memory, drop it
    return [op]() {
        VipsImage *o = nullptr, *m = vips_image_new_memory();
        if (op(&o) || vips_image_write(o, m)) {
            fprintf(stderr, "vips: %s\n", vips_error_buffer());
            vips_error_clear();
        }
        if (o) g_object_unref(o);
        g_object_unref(m);
    };
}
static std::function<void()> lrun(std::function<PIX*()> op)
{
    return [op]() {
        PIX* p = op();
        if (!p) fprintf(stderr, "leptonica: no result\n");
        pixDestroy(&p);
    };
}

// zimg: one graph, planar buffers
struct Zg {
    zimg_filter_graph* g = nullptr;
    zimg_image_buffer_const s;
    zimg_image_buffer d;
    B tmp, sb, db;
    ~Zg() { zimg_filter_graph_free(g); }
};
static size_t zbytes(zimg_pixel_type_e t)
{
    return t == ZIMG_PIXEL_BYTE ? 1 : t == ZIMG_PIXEL_FLOAT ? 4 : 2;
}
static std::function<void()> zrun(
    std::function<void(zimg_image_format&, zimg_image_format&, zimg_graph_builder_params&)> set, uint32_t seed = 1)
{
    zimg_image_format a, b;
    zimg_graph_builder_params p;
    zimg_image_format_default(&a, ZIMG_API_VERSION);
    zimg_image_format_default(&b, ZIMG_API_VERSION);
    zimg_graph_builder_params_default(&p, ZIMG_API_VERSION);
    p.cpu_type = ZIMG_CPU_AUTO_64B;
    a.pixel_range = b.pixel_range = ZIMG_RANGE_FULL;
    set(a, b, p);
    auto z = std::make_shared<Zg>();
    z->g = zimg_filter_graph_build(&a, &b, &p);
    if (!z->g) {
        char e[256];
        zimg_get_last_error(e, sizeof e);
        fprintf(stderr, "zimg: %s\n", e);
        return nullptr;
    }
    size_t ts = 0;
    zimg_filter_graph_get_tmp_size(z->g, &ts);
    z->tmp = buf(ts);
    int pa = a.color_family == ZIMG_COLOR_GREY ? 1 : 3, pb = b.color_family == ZIMG_COLOR_GREY ? 1 : 3;
    size_t sa = (a.width * zbytes(a.pixel_type) + 63) & ~(size_t)63,
           sd = (b.width * zbytes(b.pixel_type) + 63) & ~(size_t)63;
    z->sb = buf(sa * a.height * pa);
    z->db = buf(sd * b.height * pb);
    memset(&z->s, 0, sizeof z->s);
    memset(&z->d, 0, sizeof z->d);
    z->s.version = z->d.version = ZIMG_API_VERSION;
    for (int i = 0; i < pa; i++) {
        const std::vector<float>& f = field(a.width, a.height, seed + 77 * i);
        z->s.plane[i].data = z->sb->p + sa * a.height * i;
        z->s.plane[i].stride = (ptrdiff_t)sa;
        z->s.plane[i].mask = ZIMG_BUFFER_MAX;
        for (unsigned y = 0; y < a.height; y++)
            for (unsigned x = 0; x < a.width; x++) {
                float v = clip(f[(size_t)y * a.width + x], 0, 255);
                uint8_t* row = z->sb->p + sa * (a.height * (size_t)i + y);
                if (a.pixel_type == ZIMG_PIXEL_BYTE)
                    row[x] = (uint8_t)v;
                else if (a.pixel_type == ZIMG_PIXEL_WORD)
                    ((uint16_t*)row)[x] = (uint16_t)(v * 257);
                else
                    ((float*)row)[x] = v / 255.f;
            }
    }
    for (int i = 0; i < pb; i++) {
        z->d.plane[i].data = z->db->p + sd * b.height * i;
        z->d.plane[i].stride = (ptrdiff_t)sd;
        z->d.plane[i].mask = ZIMG_BUFFER_MAX;
    }
    return [z]() { zimg_filter_graph_process(z->g, &z->s, &z->d, z->tmp->p, nullptr, nullptr, nullptr, nullptr); };
}

#ifdef PEERS_HALIDE // kernels made by halide_kernels.cpp
#include <HalideBuffer.h>

#include "hl_add16s.h"
#include "hl_conv15_f32.h"
#include "hl_conv15_u8_32.h"
#include "hl_conv3_f32.h"
#include "hl_conv3_u8_16.h"
#include "hl_conv3_u8_32.h"
#include "hl_conv5_f32.h"
#include "hl_conv5_u8_16.h"
#include "hl_conv5_u8_32.h"
#include "hl_gray.h"
#include "hl_gray_planar.h"
#include "hl_hsv.h"
#include "hl_matrix_f32.h"
#include "hl_matrix_u8.h"
#include "hl_max3.h"
#include "hl_max31.h"
#include "hl_max7.h"
#include "hl_maxdiff8.h"
#include "hl_median3.h"
#include "hl_min3.h"
#include "hl_min31.h"
#include "hl_min7.h"
#include "hl_minmax_f32.h"
#include "hl_sad8.h"
#include "hl_sub16s.h"
#include "hl_thr8.h"
#include "hl_warp_lin1.h"
#include "hl_warp_lin3.h"
#include "hl_warp_nn1.h"
#include "hl_warp_nn3.h"
#include "hl_ycc.h"
#define IF_HALIDE(...) __VA_ARGS__
template <class T> using HB = std::shared_ptr<Halide::Runtime::Buffer<T>>;
// a view of an image: two dimensions, or three (channel last) where the samples of a pixel lie together
template <class T> static HB<T> hb(T* p, int w, int h, int step_bytes, int nch = 1)
{
    halide_dimension_t d[3] = { { 0, w, nch }, { 0, h, (int)(step_bytes / sizeof(T)) }, { 0, nch, 1 } };
    return std::make_shared<Halide::Runtime::Buffer<T>>(p, nch > 1 ? 3 : 2, d);
}
template <class T> static HB<T> hb3(T* p, int w, int h, int step_bytes, int nch)
{ // always three dimensions
    halide_dimension_t d[3] = { { 0, w, nch }, { 0, h, (int)(step_bytes / sizeof(T)) }, { 0, nch, 1 } };
    return std::make_shared<Halide::Runtime::Buffer<T>>(p, 3, d);
}
template <class T> static HB<T> hbp(T* p, int w, int h, int step_bytes, int nch)
{ // planes
    halide_dimension_t d[3] = { { 0, w, 1 },
                                { 0, h, (int)(step_bytes / sizeof(T)) },
                                { 0, nch, (int)(step_bytes / sizeof(T)) * h } };
    return std::make_shared<Halide::Runtime::Buffer<T>>(p, 3, d);
}
template <class T> static HB<T> hb0(T* p)
{
    return std::make_shared<Halide::Runtime::Buffer<T>>(p, 0, (halide_dimension_t*)nullptr);
}
#else
#define IF_HALIDE(...)
#endif

// measurement
static double now()
{
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec + 1e-9 * t.tv_nsec;
}
struct Con { // one contestant
    std::string name;
    std::function<void()> run, prep;
    long inner = 1;
    std::vector<double> t;
    double sample()
    {
        if (prep) {
            double s = 0;
            for (long i = 0; i < inner; i++) {
                prep();
                double a = now();
                run();
                s += now() - a;
            }
            return s / inner;
        }
        double a = now();
        for (long i = 0; i < inner; i++) run();
        return (now() - a) / inner;
    }
    double median() const
    {
        std::vector<double> v = t;
        std::sort(v.begin(), v.end());
        return v.size() % 2 ? v[v.size() / 2] : 0.5 * (v[v.size() / 2 - 1] + v[v.size() / 2]);
    }
    double min() const { return *std::min_element(t.begin(), t.end()); }
};
struct Peer {
    const char* name;
    std::function<void()> run;
    std::function<void()> prep = nullptr;
};

static int gReps = 11;
static FILE* gOut = nullptr;
static std::vector<std::string> gFilter;
static double gLogRatio = 0, gWorst = 0;
static int gRatios = 0, gCases = 0, gAbsent = 0, gErrors = 0;
static std::string gWorstName;

static bool wanted(const std::string& full)
{
    if (gFilter.empty()) return true;
    for (auto& f : gFilter)
        if (full.find(f) != std::string::npos) return true;
    return false;
}
static std::string size_text(int w, int h)
{
    return std::to_string(w) + "x" + std::to_string(h);
}

// px: pixels that the figures are divided by; bytes: read once plus written once by the ideal operation.
static void bench(const char* group, const std::string& name, const std::string& size, double px, double bytes,
                  const char* need, std::function<void()> lib, std::vector<Peer> peers, const char* equal,
                  std::function<std::string()> check = nullptr)
{
    std::string full = std::string(group) + "/" + name + " " + size;
    if (!wanted(full)) return;
    gCases++;
    std::vector<Con> cs;
    size_t half = (size_t)(bytes / 2);
    B ma = buf(half), mb = buf(half);
    Con m;
    m.name = "memcpy limit";
    m.run = [ma, mb, half]() {
        memcpy(mb->p, ma->p, half);
        asm volatile("" ::"r"(mb->p) : "memory");
    };
    cs.push_back(m);
    int li = -1;
    std::string verdict = "absent";
    if (gLib && need) {
        bool have = true;
        std::string n = need;
        for (size_t i = 0; i < n.size();) {
            size_t j = n.find(' ', i);
            if (j == std::string::npos) j = n.size();
            if (!dlsym(gLib, n.substr(i, j - i).c_str())) have = false;
            i = j + 1;
        }
        if (have && lib) {
            auto set = fn<void (*)(int32_t)>("pxkSetErrStatus");
            auto get = fn<int32_t (*)()>("pxkGetErrStatus");
            if (set) set(0);
            lib();
            int st = get ? get() : 0;
            if (st < 0) {
                verdict = "status " + std::to_string(st);
                gErrors++;
            } else {
                Con c;
                c.name = "library";
                c.run = lib;
                li = (int)cs.size();
                cs.push_back(c);
            }
        }
    }
    for (auto& p : peers) {
        if (!p.run) continue;
        Con c;
        c.name = p.name;
        c.run = p.run;
        c.prep = p.prep;
        cs.push_back(c);
    }
    double total = 0;
    for (auto& c : cs) { // warm up and choose how many calls make one sample
        double t1 = c.sample();
        t1 = std::min(t1, c.sample());
        c.inner = c.prep ? std::max(1L, (long)(1.5e-3 / std::max(t1, 1e-7)))
                         : std::max(1L, std::min(20000L, (long)(1.5e-3 / std::max(t1, 1e-8))));
        double t2 = c.sample();
        c.inner = std::max(1L, std::min(20000L, (long)(1.5e-3 / std::max(t2, 1e-8))));
        total += t2 * c.inner;
    }
    int reps = gReps;
    if (reps > 7 && total * reps > 2.5) reps = 7;
    auto rounds = [&](int k) {
        for (int r = 0; r < k; r++)
            for (auto& c : cs) c.t.push_back(c.sample());
    };
    rounds(reps);
    for (int more = 0; more < 3 && gReps > 7 && total * reps < 1.5; more++) { // a disturbed case gets more rounds
        bool calm = true;
        for (auto& c : cs) calm = calm && c.median() < 1.12 * c.min();
        if (calm) break;
        rounds(8);
    }
    reps = (int)cs[0].t.size();
    double lim = cs[0].median();
    std::string chk = check && li >= 0 ? check() : "";
    printf("%-44s limit %8.4f ns/px\n", full.c_str(), lim / px * 1e9);
    for (size_t i = 1; i < cs.size(); i++) {
        Con& c = cs[i];
        printf("    %-40s %10.4f ns/px  min %10.4f  x limit %8.2f", c.name.c_str(), c.median() / px * 1e9,
               c.min() / px * 1e9, c.median() / lim);
        if (li >= 0 && (int)i != li) printf("  library/this %7.3f", cs[li].median() / c.median());
        if ((int)i == li && !chk.empty()) printf("  %s", chk.c_str());
        printf("\n");
        if (gOut)
            fprintf(gOut, "%s\t%s\t%s\t%s\t%.6g\t%.6g\t%.6g\t%.6g\t%d\t%s\n", group, name.c_str(), size.c_str(),
                    c.name.c_str(), c.median() / px * 1e9, c.min() / px * 1e9, lim / px * 1e9, bytes / px, reps, equal);
    }
    if (li < 0) {
        printf("    %-40s %s\n", "library", verdict.c_str());
        if (verdict == "absent") gAbsent++;
    } else {
        int best = -1;
        for (size_t i = 1; i < cs.size(); i++)
            if ((int)i != li && (best < 0 || cs[i].median() < cs[best].median())) best = (int)i;
        if (best > 0) {
            double q = cs[li].median() / cs[best].median();
            gLogRatio += log(q);
            gRatios++;
            if (q > gWorst) gWorst = q, gWorstName = full + " against " + cs[best].name;
        }
    }
    fflush(stdout);
    if (gOut) fflush(gOut);
}

// compares a library image with a tightly described peer buffer of the same sample type, inside a margin
template <class T> static std::string diff(const I& a, const T* p, int pstep, int margin, double tol = 0)
{
    double worst = 0;
    long n = 0, bad = 0;
    int nch = a->h.dataOrder == PIXEL ? a->h.nChannels : 1;
    for (int y = margin; y < a->h.height - margin; y++) {
        const T* q = (const T*)(a->d() + (size_t)y * a->step());
        const T* r = (const T*)((const uint8_t*)p + (size_t)y * pstep);
        for (int x = margin * nch; x < (a->h.width - margin) * nch; x++) {
            double d = fabs((double)q[x] - (double)r[x]);
            n++;
            if (d > tol) bad++;
            if (d > worst || d != d) worst = d;
        }
    }
    char s[96];
    snprintf(s, sizeof s, "differs in %.3g%% (largest %.4g)", n ? 100.0 * bad / n : 0, worst);
    return s;
}

#include "cases.h"

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; i++) {
        std::string a = argv[i];
        if (a == "-o" && i + 1 < argc)
            gOut = fopen(argv[++i], "w");
        else if (a == "-r" && i + 1 < argc)
            gReps = atoi(argv[++i]);
        else if (a == "-q")
            gReps = 3;
        else
            gFilter.push_back(a);
    }
    mallopt(M_MMAP_THRESHOLD,
            32 << 20); // scratch and result blocks come from the heap again and again, not from fresh pages
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    setenv("VIPS_CONCURRENCY", "1", 1);
    if (vips_init(argv[0])) return 1;
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    setMsgSeverity(L_SEVERITY_ERROR);
    const char* path = getenv("PXK_LIB");
    if (path) {
        gLib = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        if (!gLib) {
            fprintf(stderr, "cannot load %s: %s\n", path, dlerror());
            return 2;
        }
        if (auto f = fn<void (*)(int32_t)>("pxkSetErrMode")) f(2);
    }
    const char* wis = getenv("PEERS_WISDOM"); // FFTW plans of an earlier run, optional
    if (wis) fftwf_import_wisdom_from_filename(wis);
    if (gOut)
        fprintf(gOut,
                "group\tcase\tsize\tcontestant\tmedian_ns_px\tmin_ns_px\tlimit_ns_px\tbytes_px\treps\tequality\n");
    double t0 = now();
    all_cases();
    if (wis) fftwf_export_wisdom_to_filename(wis);
    printf("\n%d cases in %.0f s; library absent in %d, failed in %d", gCases, now() - t0, gAbsent, gErrors);
    if (gRatios)
        printf("; library/fastest peer: geometric mean %.3f over %d, worst %.2f (%s)", exp(gLogRatio / gRatios),
               gRatios, gWorst, gWorstName.c_str());
    printf("\n");
    vips_shutdown();
    return gErrors ? 3 : 0;
}

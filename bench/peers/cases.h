/* SPDX-License-Identifier: BSD-2-Clause */
// The cases. Included by peers.cpp. Each names the group, the case, the size, the ideal traffic in bytes, the library's
// symbols it needs, the library's call, the peers, and one line on how equal the work of library and peers is.
static const int kSizes[2] = { 2048, 512 };
static bool on(const char* group, const std::string& name, const std::string& size)
{
    return wanted(std::string(group) + "/" + name + " " + size);
}
#define CASE(G, N, SZ) if (on(G, N, SZ))

// ---- copy and set ---------------------------------------------------------------------------------------
static void cases_copy()
{
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        CASE("copy", "8U", z)
        {
            I s = pic(n, n, 1, D8U), d = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
            LP ls = lept(s), ld = lept(s);
            bench(
                "copy", "8U", z, px, 2 * px, "pxkCopy",
                [=] {
                    FN("pxkCopy", F2)
                    (&s->h, &d->h);
                },
                { { "libyuv CopyPlane", [=] { libyuv::CopyPlane(s->d(), s->step(), e->d(), e->step(), n, n); } },
                  { "leptonica pixCopy", [=] { pixCopy(ld.get(), ls.get()); } } },
                "same bytes moved", [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
        }
        CASE("copy", "8U region at x 3", z)
        {
            I s = pic(n, n, 1, D8U), d = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
            int w = n - 13, h = n - 4;
            s->r = PxkROI { 0, 3, 1, w, h };
            s->h.roi = &s->r;
            d->r = PxkROI { 0, 5, 2, w, h };
            d->h.roi = &d->r;
            bench(
                "copy", "8U region at x 3", z, (double)w * h, 2.0 * w * h, "pxkCopy",
                [=] {
                    FN("pxkCopy", F2)
                    (&s->h, &d->h);
                },
                { { "libyuv CopyPlane",
                    [=] {
                        libyuv::CopyPlane(s->d() + s->step() + 3, s->step(), e->d() + 2 * e->step() + 5, e->step(), w,
                                          h);
                    } } },
                "same rows, same offsets", [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
        }
        CASE("copy", "32F", z)
        {
            I s = pic(n, n, 1, D32F), d = img(n, n, 1, D32F), e = img(n, n, 1, D32F);
            bench(
                "copy", "32F", z, px, 8 * px, "pxkCopy",
                [=] {
                    FN("pxkCopy", F2)
                    (&s->h, &d->h);
                },
                { { "libyuv CopyPlane", [=] { libyuv::CopyPlane(s->d(), s->step(), e->d(), e->step(), 4 * n, n); } } },
                "same bytes moved");
        }
        CASE("set", "8U", z)
        {
            I d = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
            bench(
                "set", "8U", z, px, px, "pxkSet",
                [=] {
                    FN("pxkSet", F1I)
                    (&d->h, 77);
                },
                { { "libyuv SetPlane", [=] { libyuv::SetPlane(e->d(), e->step(), n, n, 77); } },
                  { "pixman_fill 8", [=] { pixman_fill(e->as<uint32_t>(), e->step() / 4, 8, 0, 0, n, n, 77); } } },
                "same bytes written; the limit counts one write");
        }
        CASE("set", "32F", z)
        {
            I d = img(n, n, 1, D32F), e = img(n, n, 1, D32F);
            bench(
                "set", "32F", z, px, 4 * px, "pxkSetFP",
                [=] {
                    FN("pxkSetFP", F1F)
                    (&d->h, 1.5f);
                },
                { { "pixman_fill 32",
                    [=] { pixman_fill(e->as<uint32_t>(), e->step() / 4, 32, 0, 0, n, n, 0x3fc00000); } },
                  { "libyuv ARGBRect", [=] { libyuv::ARGBRect(e->d(), e->step(), 0, 0, n, n, 0x3fc00000); } } },
                "same bytes written");
        }
    }
}

// ---- arithmetic and logic -------------------------------------------------------------------------------
static void cases_arith()
{
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        I a = pic(n, n, 1, D8U, 1), b = pic(n, n, 1, D8U, 2), d = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
        LP la = lept(a), lb = lept(b), ld = lept(a);
        typedef int (*Y3)(const uint8_t*, int, const uint8_t*, int, uint8_t*, int, int, int);
        auto yuv3 = [=](Y3 f) { return [=] { f(a->d(), a->step(), b->d(), b->step(), e->d(), e->step(), n / 4, n); }; };
        CASE("arith", "add 8U", z)
        {
            auto pa = std::shared_ptr<pixman_image_t>(
                pixman_image_create_bits(PIXMAN_a8, n, n, a->as<uint32_t>(), a->step()), pixman_image_unref);
            I p2 = img(n, n, 1, D8U);
            auto pb = std::shared_ptr<pixman_image_t>(
                pixman_image_create_bits(PIXMAN_a8, n, n, p2->as<uint32_t>(), p2->step()), pixman_image_unref);
            bench(
                "arith", "add 8U", z, px, 3 * px, "pxkAdd",
                [=] {
                    FN("pxkAdd", F3)
                    (&a->h, &b->h, &d->h);
                },
                { { "libyuv ARGBAdd", yuv3(libyuv::ARGBAdd) },
                  { "pixman OP_ADD a8 (in place)",
                    [=] {
                        (void)p2;
                        pixman_image_composite32(PIXMAN_OP_ADD, pa.get(), nullptr, pb.get(), 0, 0, 0, 0, 0, 0, n, n);
                    } },
                  { "leptonica pixAddGray", [=] { pixAddGray(ld.get(), la.get(), lb.get()); } } },
                "same: saturated sum of bytes (ARGBAdd seen as four bytes a pixel)",
                [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
        }
        CASE("arith", "subtract 8U", z)
        bench(
            "arith", "subtract 8U", z, px, 3 * px, "pxkSubtract",
            [=] {
                FN("pxkSubtract", F3)
                (&a->h, &b->h, &d->h);
            },
            { { "libyuv ARGBSubtract", yuv3(libyuv::ARGBSubtract) },
              { "leptonica pixSubtractGray", [=] { pixSubtractGray(ld.get(), la.get(), lb.get()); } } },
            "same: saturated difference of bytes", [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
        CASE("arith", "multiply 8U", z)
        bench(
            "arith", "multiply 8U", z, px, 3 * px, "pxkMultiply",
            [=] {
                FN("pxkMultiply", F3)
                (&a->h, &b->h, &d->h);
            },
            { { "libyuv ARGBMultiply", yuv3(libyuv::ARGBMultiply) } },
            "similar: the peer scales the product by 1/256, the library saturates it");
        CASE("arith", "add 32F", z)
        {
            I fa = pic(n, n, 1, D32F, 1), fb = pic(n, n, 1, D32F, 2), fd = img(n, n, 1, D32F);
            VipsImage *va = vimg(fa), *vb = vimg(fb);
            bench(
                "arith", "add 32F", z, px, 12 * px, "pxkAdd",
                [=] {
                    FN("pxkAdd", F3)
                    (&fa->h, &fb->h, &fd->h);
                },
                { { "libvips add", vrun([=](VipsImage** o) { return vips_add(va, vb, o, NULL); }) } },
                "same; see the Python part for NumPy");
            g_object_unref(va);
            g_object_unref(vb);
        }
        for (int sub = 0; sub < 2; sub++) CASE("arith", sub ? "subtract 16S" : "add 16S", z)
            {
                I xa = pic(n, n, 1, D16S, 1), xb = pic(n, n, 1, D16S, 2), xd = img(n, n, 1, D16S),
                  xe = img(n, n, 1, D16S);
                std::vector<Peer> ps;
#ifdef PEERS_HALIDE
                auto ha = hb(xa->as<int16_t>(), n, n, xa->step()), hbb = hb(xb->as<int16_t>(), n, n, xb->step()),
                     ho = hb(xe->as<int16_t>(), n, n, xe->step());
                ps.push_back({ "Halide saturating kernel", [=] {
                                  sub ? hl_sub16s(ha->raw_buffer(), hbb->raw_buffer(), ho->raw_buffer())
                                      : hl_add16s(ha->raw_buffer(), hbb->raw_buffer(), ho->raw_buffer());
                              } });
#endif
                bench(
                    "arith", sub ? "subtract 16S" : "add 16S", z, px, 6 * px, sub ? "pxkSubtract" : "pxkAdd",
                    [=, f = fn<F3>(sub ? "pxkSubtract" : "pxkAdd")] { f(&xa->h, &xb->h, &xd->h); }, ps,
                    "same: saturated; see the Python part for NumPy, which wraps",
                    [=] { return diff<int16_t>(xd, xe->as<int16_t>(), xe->step(), 0); });
            }
        CASE("arith", "and 1U", z)
        {
            I x = pic(n, n, 1, D1U, 1), y = pic(n, n, 1, D1U, 2), r = img(n, n, 1, D1U);
            LP lx = lept(x), ly = lept(y), lr = lept(x);
            bench(
                "arith", "and 1U", z, px, 3 * px / 8, "pxkAnd",
                [=] {
                    FN("pxkAnd", F3)
                    (&x->h, &y->h, &r->h);
                },
                { { "leptonica pixAnd", [=] { pixAnd(lr.get(), lx.get(), ly.get()); } },
                  { "leptonica pixAnd in place", [=] { pixAnd(lr.get(), lr.get(), ly.get()); } } },
                "same; pixAnd into a third image copies first");
        }
        CASE("arith", "xor 8U", z)
        {
            LP lx = hold(pixCreate(8 * n, n, 1)), ly = hold(pixCreate(8 * n, n, 1)), lr = hold(pixCreate(8 * n, n, 1));
            memcpy(pixGetData(lx.get()), a->d(), (size_t)n * n);
            memcpy(pixGetData(ly.get()), b->d(), (size_t)n * n);
            bench(
                "arith", "xor 8U", z, px, 3 * px, "pxkXor",
                [=] {
                    FN("pxkXor", F3)
                    (&a->h, &b->h, &d->h);
                },
                { { "leptonica pixXor", [=] { pixXor(lr.get(), lx.get(), ly.get()); } } },
                "same bits (bytes seen as one-bit pixels); pixXor copies first");
        }
        CASE("arith", "add constant 8U", z)
        {
            VipsImage* va = vimg(a);
            LP lc = lept(a);
            auto pa = std::shared_ptr<pixman_image_t>(
                pixman_image_create_bits(PIXMAN_a8, n, n, e->as<uint32_t>(), e->step()), pixman_image_unref);
            pixman_color_t pc = { 0, 0, 0, 5 * 257 };
            auto ps = std::shared_ptr<pixman_image_t>(pixman_image_create_solid_fill(&pc), pixman_image_unref);
            bench(
                "arith", "add constant 8U", z, px, 2 * px, "pxkAddS",
                [=] {
                    FN("pxkAddS", F2I)
                    (&a->h, &d->h, 5);
                },
                { { "libvips linear uchar",
                    vrun([=](VipsImage** o) { return vips_linear1(va, o, 1.0, 5.0, "uchar", TRUE, NULL); }) },
                  { "pixman OP_ADD solid (in place)",
                    [=] {
                        pixman_image_composite32(PIXMAN_OP_ADD, ps.get(), nullptr, pa.get(), 0, 0, 0, 0, 0, 0, n, n);
                    } },
                  { "leptonica pixAddConstantGray (in place)", [=] { pixAddConstantGray(lc.get(), 5); } } },
                "same: saturated sum");
            g_object_unref(va);
        }
    }
}

// ---- threshold and depth ------------------------------------------------------------------------------------
static void cases_depth()
{
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        I a = pic(n, n, 1, D8U, 1), d = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
        CASE("depth", "threshold 8U to 8U", z)
        {
            VipsImage* va = vimg(a);
            std::vector<Peer> ps = { { "libvips moreeq_const",
                                       vrun([=](VipsImage** o) { return vips_moreeq_const1(va, o, 128, NULL); }) } };
#ifdef PEERS_HALIDE
            auto ha = hb(a->d(), n, n, a->step()), ho = hb(e->d(), n, n, e->step());
            ps.push_back({ "Halide threshold kernel", [=] { hl_thr8(ha->raw_buffer(), 128, ho->raw_buffer()); } });
#endif
            bench(
                "depth", "threshold 8U to 8U", z, px, 2 * px, "pxkThreshold",
                [=] {
                    FN("pxkThreshold", F2I)
                    (&a->h, &d->h, 128);
                },
                ps, "same result 0 and 255", [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
            g_object_unref(va);
        }
        CASE("depth", "threshold 8U to 1U", z)
        {
            LP la = lept(a);
            I o = img(n, n, 1, D1U);
            bench(
                "depth", "threshold 8U to 1U", z, px, px + px / 8, "pxkThreshold",
                [=] {
                    FN("pxkThreshold", F2I)
                    (&a->h, &o->h, 128);
                },
                { { "leptonica pixThresholdToBinary", lrun([=] { return pixThresholdToBinary(la.get(), 128); }) } },
                "same work, inverse sense");
        }
        I w16 = img(n, n, 1, D16U), x16 = img(n, n, 1, D16U), s16 = pic(n, n, 1, D16U, 3);
        auto zdepth = [=](zimg_pixel_type_e from, zimg_pixel_type_e to) {
            return zrun([=](zimg_image_format& p, zimg_image_format& q, zimg_graph_builder_params&) {
                p.width = q.width = p.height = q.height = n;
                p.pixel_type = from, q.pixel_type = to;
                p.depth = 8 * zbytes(from), q.depth = 8 * zbytes(to);
            });
        };
        CASE("depth", "convert 8U to 16U", z)
        bench(
            "depth", "convert 8U to 16U", z, px, 3 * px, "pxkConvert",
            [=] {
                FN("pxkConvert", int32_t(*)(PxkImage*, PxkImage*))
                (&a->h, &w16->h);
            },
            { { "libyuv Convert8To16Plane",
                [=] {
                    libyuv::Convert8To16Plane(a->d(), a->step(), x16->as<uint16_t>(), x16->step() / 2, 256, n, n);
                } },
              { "zimg byte to word", zdepth(ZIMG_PIXEL_BYTE, ZIMG_PIXEL_WORD) } },
            "libyuv also scales (x*257*256>>16); zimg maps full range");
        CASE("depth", "scale 8U to 16U", z)
        bench(
            "depth", "scale 8U to 16U", z, px, 3 * px, "pxkScale",
            [=] {
                FN("pxkScale", int32_t(*)(PxkImage*, PxkImage*))
                (&a->h, &w16->h);
            },
            { { "libyuv Convert8To16Plane",
                [=] {
                    libyuv::Convert8To16Plane(a->d(), a->step(), x16->as<uint16_t>(), x16->step() / 2, 32768, n, n);
                } },
              { "zimg byte to word", zdepth(ZIMG_PIXEL_BYTE, ZIMG_PIXEL_WORD) } },
            "zimg same map 257x; libyuv x*257*32768>>16");
        CASE("depth", "scale 16U to 8U", z)
        bench(
            "depth", "scale 16U to 8U", z, px, 3 * px, "pxkScale",
            [=] {
                FN("pxkScale", int32_t(*)(PxkImage*, PxkImage*))
                (&s16->h, &d->h);
            },
            { { "libyuv Convert16To8Plane",
                [=] {
                    libyuv::Convert16To8Plane(s16->as<uint16_t>(), s16->step() / 2, e->d(), e->step(), 256, n, n);
                } },
              { "zimg word to byte", zdepth(ZIMG_PIXEL_WORD, ZIMG_PIXEL_BYTE) } },
            "the peers clamp or round differently, one multiply each");
        I f = pic(n, n, 1, D32F, 1), g = img(n, n, 1, D32F), g2 = img(n, n, 1, D32F);
        typedef int32_t (*SFP)(PxkImage*, PxkImage*, float, float);
        CASE("depth", "8U to 32F", z)
        bench(
            "depth", "8U to 32F", z, px, 5 * px, "pxkScaleFP",
            [=] {
                FN("pxkScaleFP", SFP)
                (&a->h, &g->h, 0.f, 1.f);
            },
            { { "libyuv ByteToFloat", [=] { libyuv::ByteToFloat(a->d(), g2->as<float>(), 1 / 255.f, n * n); } },
              { "zimg byte to float", zdepth(ZIMG_PIXEL_BYTE, ZIMG_PIXEL_FLOAT) } },
            "peers multiply in float; the library's map is told in double, within a last place",
            [=] { return diff<float>(g, g2->as<float>(), g2->step(), 0, 1e-6); });
        CASE("depth", "32F to 8U", z)
        bench(
            "depth", "32F to 8U", z, px, 5 * px, "pxkScaleFP",
            [=] {
                FN("pxkScaleFP", SFP)
                (&f->h, &d->h, 0.f, 255.f);
            },
            { { "zimg float to byte", zdepth(ZIMG_PIXEL_FLOAT, ZIMG_PIXEL_BYTE) } },
            "same: scale, clamp, round to nearest");
    }
}

// ---- convolution --------------------------------------------------------------------------------------------
// one 2-D float convolution through FFTW: pad, forward, multiply, inverse; the kernel's spectrum is ready
struct FftConv {
    int n, m, k;
    float *r, *o;
    fftwf_complex *c, *kc;
    fftwf_plan f, i;
    FftConv(int n_, int k_)
        : n(n_)
        , k(k_)
    {
        static const int good[] = { 520, 525, 528, 532, 540, 2052, 2064, 2080, 2100 };
        m = n + k - 1;
        for (int g : good)
            if (g >= m) {
                m = g;
                break;
            }
        size_t cw = m / 2 + 1;
        r = fftwf_alloc_real((size_t)m * m), o = fftwf_alloc_real((size_t)m * m);
        c = fftwf_alloc_complex(cw * m), kc = fftwf_alloc_complex(cw * m);
        f = fftwf_plan_dft_r2c_2d(m, m, r, c, FFTW_MEASURE);
        i = fftwf_plan_dft_c2r_2d(m, m, c, o, FFTW_MEASURE);
        memset(r, 0, sizeof(float) * m * m);
        for (int y = 0; y < k; y++)
            for (int x = 0; x < k; x++) r[(size_t)y * m + x] = 1.f / (k * k);
        fftwf_execute_dft_r2c(f, r, kc);
        memset(r, 0, sizeof(float) * m * m);
    }
    ~FftConv()
    {
        fftwf_destroy_plan(f);
        fftwf_destroy_plan(i);
        fftwf_free(r);
        fftwf_free(o);
        fftwf_free(c);
        fftwf_free(kc);
    }
    void run(const float* s, float* d)
    {
        for (int y = 0; y < n; y++) memcpy(r + (size_t)y * m, s + (size_t)y * n, sizeof(float) * n);
        fftwf_execute(f);
        size_t t = (size_t)(m / 2 + 1) * m;
        for (size_t j = 0; j < t; j++) {
            float a = c[j][0], b = c[j][1], p = kc[j][0], q = kc[j][1];
            c[j][0] = a * p - b * q, c[j][1] = a * q + b * p;
        }
        fftwf_execute(i);
        float sc = 1.f / ((float)m * m);
        for (int y = 0; y < n; y++) {
            const float* p = o + (size_t)(y + k / 2) * m + k / 2;
            for (int x = 0; x < n; x++) d[(size_t)y * n + x] = p[x] * sc;
        }
    }
};
static void cases_conv()
{
    typedef void* (*KI)(int32_t, int32_t, int32_t, int32_t, int32_t*, int32_t);
    typedef void* (*KF)(int32_t, int32_t, int32_t, int32_t, float*);
    typedef void (*CV)(PxkImage*, PxkImage*, void**, int32_t, int32_t);
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        for (int k : { 3, 5, 15 }) {
            // a dense kernel without equal or zero coefficients that could be skipped; sum near 256
            std::vector<int32_t> ki(k * k);
            std::vector<float> kf(k * k);
            std::vector<double> kd(k * k);
            gSeed = 99 + k;
            for (int i = 0; i < k * k; i++) {
                ki[i] =
                    k == 15 ? 2 + (int)(rnd() % 5) - ((int)(rnd() % 4) == 0) * 6 : 2 + (int)(rnd() % (512 / (k * k)));
                if (ki[i] == 0) ki[i] = 3;
                kf[i] = ki[i] / 256.f;
                kd[i] = ki[i];
            }
            std::string ks = std::to_string(k) + "x" + std::to_string(k);
            VipsImage* vk = vips_image_new_matrix_from_array(k, k, kd.data(), k * k);
            vips_image_set_double(vk, "scale", 256.0);
            for (int nch : { 1, 3 }) {
                if (nch == 3 && k != 3) continue;
                std::string nm = ks + (nch == 3 ? " 8U RGB" : " 8U");
                CASE("conv", nm, z)
                {
                    I s = pic(n, n, nch, D8U), d = img(n, n, nch, D8U);
                    VipsImage* vs = vimg(s);
                    KI mk = fn<KI>("pxkCreateConvKernel");
                    void* kern = mk ? mk(k, k, k / 2, k / 2, ki.data(), 8) : nullptr;
                    LP ls = nch == 1 && k < 15 ? lept(s) : nullptr;
                    L_KERNEL* lk = kernelCreate(k, k);
                    for (int i = 0; i < k * k; i++) kernelSetElement(lk, i / k, i % k, kf[i]);
                    auto lkp = std::shared_ptr<L_KERNEL>(lk, [](L_KERNEL* q) { kernelDestroy(&q); });
                    std::vector<Peer> ps = { { "libvips convi (vector)", vrun([=](VipsImage** o) {
                                                   vips_vector_set_enabled(TRUE);
                                                   return vips_convi(vs, o, vk, NULL);
                                               }) },
                                             { "libvips conv integer (C)",
                                               k == 15 && n == 2048 ? std::function<void()>()
                                                                    : vrun([=](VipsImage** o) {
                                                                          vips_vector_set_enabled(FALSE);
                                                                          return vips_convi(vs, o, vk, NULL);
                                                                      }) } };
#ifdef PEERS_HALIDE
                    {
                        I pad = pic(n + 32, n + 32, nch, D8U, 7), e = img(n, n, nch, D8U);
                        auto kk = buf(k * k * 2);
                        for (int i = 0; i < k * k; i++) ((int16_t*)kk->p)[i] = (int16_t)ki[i];
                        // three interleaved channels: the same kernel with a tap distance of three samples is not among
                        // these, so planes are used
                        auto hk = hb((int16_t*)kk->p, k, k, 2 * k);
                        I pp = nch == 1 ? pad : pic(n + 32, n + 32, 3, D8U, 7, PLANE),
                          ee = nch == 1 ? e : img(n, n, 3, D8U, PLANE);
                        std::vector<HB<uint8_t>> hi, ho;
                        for (int c = 0; c < nch; c++) {
                            hi.push_back(hb(pp->d() + (size_t)c * pp->step() * (n + 32), n + 32, n + 32, pp->step()));
                            ho.push_back(hb(ee->d() + (size_t)c * ee->step() * n, n, n, ee->step()));
                        }
                        ps.push_back({ nch == 1 ? "Halide kernel, 32-bit sums" : "Halide kernel, three planes", [=] {
                                          (void)pp;
                                          (void)ee;
                                          (void)kk;
                                          for (int c = 0; c < nch; c++)
                                              (k == 3       ? hl_conv3_u8_32
                                                   : k == 5 ? hl_conv5_u8_32
                                                            : hl_conv15_u8_32)(hi[c]->raw_buffer(), hk->raw_buffer(), 8,
                                                                               ho[c]->raw_buffer());
                                      } });
                    }
#endif
                    if (ls && n == 512)
                        ps.push_back(
                            { "leptonica pixConvolve", lrun([=] { return pixConvolve(ls.get(), lkp.get(), 8, 0); }) });
                    bench(
                        "conv", nm, z, px, 2.0 * nch * px, "pxkCreateConvKernel pxkConvolve2D",
                        [=] {
                            void* kk[1] = { kern };
                            FN("pxkConvolve2D", CV)(&s->h, &d->h, kk, 1, 0);
                        },
                        ps,
                        "libvips repeats edge samples, rounds and divides; its vector path works on coefficients of "
                        "few bits; Halide: the library's own arithmetic on a source padded beforehand");
                    g_object_unref(vs);
                }
            }
            CASE("conv", ks + " 32F", z)
            {
                I s = pic(n, n, 1, D32F), d = img(n, n, 1, D32F), e = img(n, n, 1, D32F);
                VipsImage* vs = vimg(s);
                KF mk = fn<KF>("pxkCreateConvKernelFP");
                void* kern = mk ? mk(k, k, k / 2, k / 2, kf.data()) : nullptr;
                std::vector<Peer> ps;
                if (k < 15 || n == 512)
                    ps.push_back({ "libvips convf", vrun([=](VipsImage** o) { return vips_convf(vs, o, vk, NULL); }) });
                if (k == 15) {
                    auto fc = std::make_shared<FftConv>(n, k);
                    ps.push_back({ "FFTW convolution", [=] { fc->run(s->as<float>(), e->as<float>()); } });
                }
#ifdef PEERS_HALIDE
                {
                    I pad = pic(n + 32, n + 32, 1, D32F, 7), e2 = img(n, n, 1, D32F);
                    auto kk = buf(k * k * 4);
                    memcpy(kk->p, kf.data(), k * k * 4);
                    auto hi = hb(pad->as<float>(), n + 32, n + 32, pad->step()),
                         ho = hb(e2->as<float>(), n, n, e2->step()), hk = hb((float*)kk->p, k, k, 4 * k);
                    ps.push_back({ "Halide kernel", [=] {
                                      (void)pad;
                                      (void)e2;
                                      (void)kk;
                                      (k == 3 ? hl_conv3_f32
                                           : k == 5
                                           ? hl_conv5_f32
                                           : hl_conv15_f32)(hi->raw_buffer(), hk->raw_buffer(), ho->raw_buffer());
                                  } });
                }
#endif
                bench(
                    "conv", ks + " 32F", z, px, 8 * px, "pxkCreateConvKernelFP pxkConvolve2DFP",
                    [=] {
                        void* kk[1] = { kern };
                        FN("pxkConvolve2DFP", CV)(&s->h, &d->h, kk, 1, 0);
                    },
                    ps,
                    "libvips same sums, edge samples repeated; Halide same sums on a source padded beforehand; FFTW: "
                    "zero border, any kernel of the size");
                g_object_unref(vs);
            }
            g_object_unref(vk);
        }
        for (int k : { 3, 5 }) { // all sums fit 16 bits
            std::string nm = std::to_string(k) + "x" + std::to_string(k) + " 8U small sums";
            CASE("conv", nm, z)
            {
                I s = pic(n, n, 1, D8U), d = img(n, n, 1, D8U);
                std::vector<int32_t> ki(k * k);
                for (int i = 0; i < k * k; i++) ki[i] = 2 + (i * 7) % (k == 3 ? 9 : 5);
                KI mk = fn<KI>("pxkCreateConvKernel");
                void* kern = mk ? mk(k, k, k / 2, k / 2, ki.data(), k == 3 ? 6 : 7) : nullptr;
                std::vector<Peer> ps;
#ifdef PEERS_HALIDE
                I pad = pic(n + 32, n + 32, 1, D8U, 7), e = img(n, n, 1, D8U);
                auto kk = buf(k * k * 2);
                for (int i = 0; i < k * k; i++) ((int16_t*)kk->p)[i] = (int16_t)ki[i];
                auto hk = hb((int16_t*)kk->p, k, k, 2 * k);
                auto hi = hb(pad->d(), n + 32, n + 32, pad->step()), ho = hb(e->d(), n, n, e->step());
                ps.push_back({ "Halide kernel, 16-bit sums", [=] {
                                  (void)kk;
                                  (void)pad;
                                  (void)e;
                                  (k == 3 ? hl_conv3_u8_16 : hl_conv5_u8_16)(hi->raw_buffer(), hk->raw_buffer(),
                                                                             k == 3 ? 6 : 7, ho->raw_buffer());
                              } });
#endif
                bench(
                    "conv", nm, z, px, 2 * px, "pxkCreateConvKernel pxkConvolve2D",
                    [=] {
                        void* kk1[1] = { kern };
                        FN("pxkConvolve2D", CV)(&s->h, &d->h, kk1, 1, 0);
                    },
                    ps,
                    "every sum fits 16 bits, so the narrowest accumulator is half as wide; Halide on a source padded "
                    "beforehand");
            }
        }
        // box and separable
        CASE("conv", "box 15x15 8U", z)
        {
            I s = pic(n, n, 1, D8U), d = img(n, n, 1, D8U);
            LP ls = lept(s);
            std::vector<int32_t> ones(225, 1);
            KI mk = fn<KI>("pxkCreateConvKernel");
            void* kern = mk ? mk(15, 15, 7, 7, ones.data(), 8) : nullptr;
            I s4 = pic(n / 4, n, 4, D8U), d4 = img(n / 4, n, 4, D8U);
            B cum = buf((size_t)n / 4 * (n + 1) * 16);
            double one15[15];
            for (double& v : one15) v = 1;
            VipsImage *vk = vips_image_new_matrix_from_array(15, 1, one15, 15), *vs = vimg(s);
            vips_image_set_double(vk, "scale", 15);
            bench(
                "conv", "box 15x15 8U", z, px, 2 * px, "pxkCreateConvKernel pxkConvolve2D",
                [=] {
                    void* kk[1] = { kern };
                    FN("pxkConvolve2D", CV)(&s->h, &d->h, kk, 1, 0);
                },
                { { "leptonica pixBlockconvGray", lrun([=] { return pixBlockconvGray(ls.get(), nullptr, 7, 7); }) },
                  { "libyuv ARGBBlur radius 7",
                    [=] {
                        libyuv::ARGBBlur(s4->d(), s4->step(), d4->d(), d4->step(), (int32_t*)cum->p, n, n / 4, n, 7);
                    } },
                  { "libvips convsep", vrun([=](VipsImage** o) {
                        vips_vector_set_enabled(TRUE);
                        return vips_convsep(vs, o, vk, "precision", VIPS_PRECISION_INTEGER, NULL);
                    }) } },
                "the library sums 225 ones and shifts by 8; the peers use running sums or integral images and divide "
                "by 225; ARGBBlur on an image a quarter as wide, four bytes a pixel");
            g_object_unref(vs);
            g_object_unref(vk);
        }
        CASE("conv", "gauss 5x5 32F separable", z)
        {
            I s = pic(n, n, 1, D32F), d = img(n, n, 1, D32F), e = img(n, n, 1, D32F);
            const float g[5] = { 1, 4, 6, 4, 1 };
            std::vector<float> kf(25);
            for (int i = 0; i < 25; i++) kf[i] = g[i / 5] * g[i % 5] / 256;
            KF mk = fn<KF>("pxkCreateConvKernelFP");
            void* kern = mk ? mk(5, 5, 2, 2, kf.data()) : nullptr;
            bench(
                "conv", "gauss 5x5 32F separable", z, px, 8 * px, "pxkCreateConvKernelFP pxkConvolve2DFP",
                [=] {
                    void* kk[1] = { kern };
                    FN("pxkConvolve2DFP", CV)(&s->h, &d->h, kk, 1, 0);
                },
                { { "libyuv GaussPlane_F32",
                    [=] {
                        libyuv::GaussPlane_F32(s->as<float>(), s->step() / 4, e->as<float>(), e->step() / 4, n, n);
                    } } },
                "the peer is separable and has its coefficients built in; the library runs its dense 5x5",
                [=] { return diff<float>(d, e->as<float>(), e->step(), 2, 1e-2); });
        }
    }
}

// ---- rank filters and morphology ----------------------------------------------------------------------------
static void cases_rank()
{
    typedef void (*RF)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t, int32_t);
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        I s = pic(n, n, 1, D8U), d = img(n, n, 1, D8U);
        LP ls = lept(s);
        for (int k : { 3, 7, 31 }) {
            std::string ks = std::to_string(k) + "x" + std::to_string(k);
            for (int mx = 0; mx < 2; mx++) {
                std::string nm = std::string(mx ? "max " : "min ") + ks + " 8U";
                CASE("rank", nm, z)
                {
                    VipsImage* vs = vimg(s);
                    std::vector<Peer> ps = { { mx ? "leptonica pixDilateGray" : "leptonica pixErodeGray", lrun([=] {
                                                   return mx ? pixDilateGray(ls.get(), k, k)
                                                             : pixErodeGray(ls.get(), k, k);
                                               }) } };
                    if (k == 3)
                        ps.push_back({ mx ? "leptonica pixDilateGray3" : "leptonica pixErodeGray3", lrun([=] {
                                           return mx ? pixDilateGray3(ls.get(), 3, 3) : pixErodeGray3(ls.get(), 3, 3);
                                       }) });
                    if (k == 3 && mx)
                        ps.push_back({ "libvips rank",
                                       vrun([=](VipsImage** o) { return vips_rank(vs, o, k, k, k * k - 1, NULL); }) });
#ifdef PEERS_HALIDE
                    I pad = pic(n + 32, n + 32, 1, D8U, 7), e = img(n, n, 1, D8U);
                    auto hi = hb(pad->d(), n + 32, n + 32, pad->step()), ho = hb(e->d(), n, n, e->step());
                    ps.push_back({ "Halide separable kernel", [=] {
                                      (void)pad;
                                      (void)e;
                                      (mx ? (k == 3       ? hl_max3
                                                 : k == 7 ? hl_max7
                                                          : hl_max31)
                                          : (k == 3       ? hl_min3
                                                 : k == 7 ? hl_min7
                                                          : hl_min31))(hi->raw_buffer(), ho->raw_buffer());
                                  } });
#endif
                    std::string need = mx ? "pxkMaxFilter" : "pxkMinFilter";
                    bench(
                        "rank", nm, z, px, 2 * px, need.c_str(),
                        [=, f = fn<RF>(mx ? "pxkMaxFilter" : "pxkMinFilter")] { f(&s->h, &d->h, k, k, k / 2, k / 2); },
                        ps,
                        "same inside; outside samples are ignored by Leptonica, clamped by the library; Halide on a "
                        "source padded beforehand, windows of 7 and 31 by doubling");
                    g_object_unref(vs);
                }
                std::string mn = std::string(mx ? "dilate " : "erode ") + ks + " 8U";
                CASE("morph", mn, z)
                {
                    std::vector<Peer> ps = { { mx ? "leptonica pixDilateGray" : "leptonica pixErodeGray", lrun([=] {
                                                   return mx ? pixDilateGray(ls.get(), k, k)
                                                             : pixErodeGray(ls.get(), k, k);
                                               }) } };
                    if (k == 3)
                        ps.push_back({ mx ? "leptonica pixDilateGray3" : "leptonica pixErodeGray3", lrun([=] {
                                           return mx ? pixDilateGray3(ls.get(), 3, 3) : pixErodeGray3(ls.get(), 3, 3);
                                       }) });
#ifdef PEERS_HALIDE
                    I pad = pic(n + 32, n + 32, 1, D8U, 7), e = img(n, n, 1, D8U);
                    auto hi = hb(pad->d(), n + 32, n + 32, pad->step()), ho = hb(e->d(), n, n, e->step());
                    ps.push_back({ "Halide separable kernel", [=] {
                                      (void)pad;
                                      (void)e;
                                      (mx ? (k == 3       ? hl_max3
                                                 : k == 7 ? hl_max7
                                                          : hl_max31)
                                          : (k == 3       ? hl_min3
                                                 : k == 7 ? hl_min7
                                                          : hl_min31))(hi->raw_buffer(), ho->raw_buffer());
                                  } });
#endif
                    bench(
                        "morph", mn, z, px, 2 * px, mx ? "pxkDilate" : "pxkErode",
                        [=, f = fn<F2I>(mx ? "pxkDilate" : "pxkErode")] { f(&s->h, &d->h, k / 2); }, ps,
                        "same inside; edge rules differ; Halide on a source padded beforehand");
                }
            }
        }
        for (int k : { 3, 5, 15 }) {
            std::string nm = "median " + std::to_string(k) + "x" + std::to_string(k) + " 8U";
            CASE("rank", nm, z)
            {
                VipsImage* vs = vimg(s);
                std::vector<Peer> ps = {
                    { "leptonica pixMedianFilter", lrun([=] { return pixMedianFilter(ls.get(), k, k); }) },
                    { "libvips median", vrun([=](VipsImage** o) { return vips_median(vs, o, k, NULL); }) }
                };
#ifdef PEERS_HALIDE
                I pad = pic(n + 32, n + 32, 1, D8U, 7), e = img(n, n, 1, D8U);
                auto hi = hb(pad->d(), n + 32, n + 32, pad->step()), ho = hb(e->d(), n, n, e->step());
                if (k == 3)
                    ps.push_back({ "Halide selection network", [=] {
                                      (void)pad;
                                      (void)e;
                                      hl_median3(hi->raw_buffer(), ho->raw_buffer());
                                  } });
#endif
                bench(
                    "rank", nm, z, px, 2 * px, "pxkMedianFilter",
                    [=] {
                        FN("pxkMedianFilter", RF)
                        (&s->h, &d->h, k, k, k / 2, k / 2);
                    },
                    ps, "same inside; edge rules differ; Halide on a source padded beforehand");
                g_object_unref(vs);
            }
        }
        CASE("rank", "median 5x5 16U", z)
        {
            I s16 = pic(n, n, 1, D16U), d16 = img(n, n, 1, D16U);
            VipsImage* vs = vimg(s16);
            bench(
                "rank", "median 5x5 16U", z, px, 4 * px, "pxkMedianFilter",
                [=] {
                    FN("pxkMedianFilter", RF)
                    (&s16->h, &d16->h, 5, 5, 2, 2);
                },
                { { "libvips median", vrun([=](VipsImage** o) { return vips_median(vs, o, 5, NULL); }) } },
                "same inside; edge rules differ");
            g_object_unref(vs);
        }
        I b = pic(n, n, 1, D1U), bd = img(n, n, 1, D1U);
        LP lb = lept(b);
        for (int k : { 3, 7, 31 })
            for (int mx = 0; mx < 2; mx++) {
                std::string nm =
                    std::string(mx ? "dilate " : "erode ") + std::to_string(k) + "x" + std::to_string(k) + " 1U";
                CASE("morph", nm, z)
                bench(
                    "morph", nm, z, px, px / 4, mx ? "pxkDilate" : "pxkErode",
                    [=, f = fn<F2I>(mx ? "pxkDilate" : "pxkErode")] { f(&b->h, &bd->h, k / 2); },
                    { { mx ? "leptonica pixDilateBrick" : "leptonica pixErodeBrick", lrun([=] {
                            return mx ? pixDilateBrick(nullptr, lb.get(), k, k)
                                      : pixErodeBrick(nullptr, lb.get(), k, k);
                        }) },
                      { mx ? "leptonica pixDilateBrickDwa" : "leptonica pixErodeBrickDwa", lrun([=] {
                            return mx ? pixDilateBrickDwa(nullptr, lb.get(), k, k)
                                      : pixErodeBrickDwa(nullptr, lb.get(), k, k);
                        }) },
                      { mx ? "leptonica pixDilateCompBrick" : "leptonica pixErodeCompBrick", lrun([=] {
                            return mx ? pixDilateCompBrick(nullptr, lb.get(), k, k)
                                      : pixErodeCompBrick(nullptr, lb.get(), k, k);
                        }) },
                      { mx ? "leptonica pixDilateCompBrickDwa" : "leptonica pixErodeCompBrickDwa", lrun([=] {
                            return mx ? pixDilateCompBrickDwa(nullptr, lb.get(), k, k)
                                      : pixErodeCompBrickDwa(nullptr, lb.get(), k, k);
                        }) } },
                    "same inside; the peer treats outside as the neutral value; composite bricks of 31 are those of 30 "
                    "or 32 where 31 does not factor");
            }
    }
}

// ---- transforms ---------------------------------------------------------------------------------------------
static void cases_transform()
{
    const int dims[8][2] = { { 256, 256 },   { 512, 512 },   { 1024, 1024 }, { 2048, 2048 },
                             { 1000, 1000 }, { 1536, 1536 }, { 640, 480 },   { 97, 101 } };
    for (auto& q : dims) {
        int w = q[0], h = q[1];
        std::string z = size_text(w, h);
        double px = (double)w * h;
        bool any = on("fft", "forward 32F", z) || on("fft", "inverse 32F", z);
        if (any) {
            I s = pic(w, h, 1, D32F, 1, PIXEL, 4), d = img(w, h, 1, D32F, PIXEL, nullptr, nullptr, 4),
              r = img(w, h, 1, D32F, PIXEL, nullptr, nullptr, 4);
            size_t cn = (size_t)(w / 2 + 1) * h;
            auto C = buf(cn * 8), K = buf(cn * 8);
            auto In = buf((size_t)w * h * 4), Out = buf((size_t)w * h * 4);
            fftwf_plan f = fftwf_plan_dft_r2c_2d(h, w, (float*)In->p, (fftwf_complex*)C->p, FFTW_MEASURE);
            fftwf_plan i = fftwf_plan_dft_c2r_2d(h, w, (fftwf_complex*)C->p, (float*)Out->p, FFTW_MEASURE);
            for (int y = 0; y < h; y++)
                memcpy(In->p + (size_t)y * w * 4, s->d() + (size_t)y * s->step(), (size_t)w * 4);
            fftwf_execute(f);
            memcpy(K->p, C->p, cn * 8);
            auto fp = fn<F2I>("pxkRealFft2D"), ip = fn<F2I>("pxkCcsFft2D");
            if (fp) fp(&s->h, &d->h, 1);
            bench(
                "fft", "forward 32F", z, px, 8 * px, "pxkRealFft2D", [=] { fp(&s->h, &d->h, 1); },
                { { "FFTW r2c float, measured plan", [=] { fftwf_execute(f); } } },
                "the peer leaves half-plane complex rows; the library also packs them into an image of real values",
                [=] {
                    char t[80];
                    snprintf(t, sizeof t, "F(0,0) %.7g against %.7g", d->as<float>()[0], ((float*)K->p)[0]);
                    return std::string(t);
                });
            bench(
                "fft", "inverse 32F", z, px, 8 * px, "pxkCcsFft2D pxkRealFft2D", [=] { ip(&d->h, &r->h, 2); },
                { { "FFTW c2r float, measured plan", [=] { fftwf_execute(i); }, [=] { memcpy(C->p, K->p, cn * 8); } } },
                "the peer does not scale by 1/(WH), starts from unpacked rows and destroys its input, which is "
                "restored outside the timing",
                [=] { return diff<float>(r, s->as<float>(), s->step(), 0, 0.01); });
            fftwf_destroy_plan(f);
            fftwf_destroy_plan(i);
        }
        for (int inv = 0; inv < 2; inv++) {
            std::string nm = inv ? "whole inverse 32F" : "whole forward 32F";
            CASE("dct", nm, z)
            {
                I s = pic(w, h, 1, D32F, 1, PIXEL, 4), d = img(w, h, 1, D32F, PIXEL, nullptr, nullptr, 4);
                auto In = buf((size_t)w * h * 4), Out = buf((size_t)w * h * 4);
                fftwf_r2r_kind k = inv ? FFTW_REDFT01 : FFTW_REDFT10;
                fftwf_plan p = fftwf_plan_r2r_2d(h, w, (float*)In->p, (float*)Out->p, k, k, FFTW_MEASURE);
                for (int y = 0; y < h; y++)
                    memcpy(In->p + (size_t)y * w * 4, s->d() + (size_t)y * s->step(), (size_t)w * 4);
                bench(
                    "dct", nm, z, px, 8 * px, "pxkDCT2D",
                    [=] {
                        FN("pxkDCT2D", F2I)
                        (&s->h, &d->h, inv ? 2 : 1);
                    },
                    { { inv ? "FFTW REDFT01 float" : "FFTW REDFT10 float", [=] { fftwf_execute(p); } } },
                    "the peer leaves out the orthonormal scaling (one multiply a value)");
                fftwf_destroy_plan(p);
            }
        }
    }
    for (int n : kSizes)
        for (int inv = 0; inv < 2; inv++) {
            std::string z = size_text(n, n), nm = inv ? "8x8 blocks inverse 32F" : "8x8 blocks forward 32F";
            double px = (double)n * n;
            CASE("dct", nm, z)
            {
                I s = img(n, n, 1, D32F, PIXEL, nullptr, nullptr, 32, true),
                  d = img(n, n, 1, D32F, PIXEL, nullptr, nullptr, 32, true), e = img(n, n, 1, D32F);
                fill(s, 1);
                fftwf_r2r_kind k = inv ? FFTW_REDFT01 : FFTW_REDFT10, kk[2] = { k, k };
                fftwf_iodim g[2] = { { 8, n, n }, { 8, 1, 1 } }, hm[2] = { { n / 8, 8 * n, 8 * n }, { n / 8, 8, 8 } };
                fftwf_plan all = fftwf_plan_guru_r2r(2, g, 2, hm, s->as<float>(), e->as<float>(), kk, FFTW_MEASURE);
                fftwf_plan one =
                    fftwf_plan_guru_r2r(2, g, 0, hm, s->as<float>(), e->as<float>(), kk, FFTW_MEASURE | FFTW_UNALIGNED);
                fill(s, 1);
                bench(
                    "dct", nm, z, px, 8 * px, "pxkDCT2D",
                    [=, f = fn<F2I>("pxkDCT2D")] {
                        for (int y = 0; y < n; y += 8)
                            for (int x = 0; x < n; x += 8) {
                                s->r = d->r = PxkROI { 0, x, y, 8, 8 };
                                f(&s->h, &d->h, inv ? 2 : 1);
                            }
                    },
                    { { "FFTW, one plan for all blocks", [=] { fftwf_execute(all); } },
                      { "FFTW, one call a block",
                        [=] {
                            for (int y = 0; y < n; y += 8)
                                for (int x = 0; x < n; x += 8)
                                    fftwf_execute_r2r(one, s->as<float>() + (size_t)y * n + x,
                                                      e->as<float>() + (size_t)y * n + x);
                        } } },
                    "the library is called once a block with its region moved, as its interface asks; the peer does "
                    "not scale");
                fftwf_destroy_plan(all);
                fftwf_destroy_plan(one);
            }
        }
}

// ---- geometry -----------------------------------------------------------------------------------------------
static const char* kInter[3] = { "nearest", "linear", "cubic" };
static const char* kVipsInter[3] = { "nearest", "bilinear", "bicubic" };
static std::shared_ptr<pixman_image_t> pixm(pixman_format_code_t f, int w, int h, void* p, int stride)
{
    return std::shared_ptr<pixman_image_t>(pixman_image_create_bits(f, w, h, (uint32_t*)p, stride), pixman_image_unref);
}
static void cases_geometry()
{
    typedef void (*RS)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t, int32_t, int32_t);
    for (int n : kSizes)
        for (int up = 1; up >= 0; up--) {
            int sn = up ? n / 2 : n, dn = up ? n : n * 2 / 5;
            double sc = up ? 2.0 : 0.4;
            std::string z = size_text(sn, sn) + " to " + size_text(dn, dn);
            double px = (double)dn * dn;
            for (int nch : { 1, 3 })
                for (int planar = 0; planar < (nch == 3 ? 2 : 1); planar++)
                    for (int it = 0; it < 3; it++) {
                        std::string nm = std::string(up ? "up 2 " : "down 2.5 ") + kInter[it]
                            + (nch == 1     ? " 8U"
                                   : planar ? " RGB planar"
                                            : " RGB");
                        CASE("resize", nm, z)
                        {
                            I s = pic(sn, sn, nch, D8U, 1, planar ? PLANE : PIXEL),
                              d = img(dn, dn, nch, D8U, planar ? PLANE : PIXEL),
                              e = img(dn, dn, nch, D8U, planar ? PLANE : PIXEL);
                            std::vector<Peer> ps;
                            libyuv::FilterMode fm = it == 0 ? libyuv::kFilterNone : libyuv::kFilterBilinear;
                            if (it < 2) {
                                if (nch == 1 || planar)
                                    ps.push_back({ "libyuv ScalePlane", [=] {
                                                      for (int c = 0; c < nch; c++)
                                                          libyuv::ScalePlane(s->d() + (size_t)c * s->step() * sn,
                                                                             s->step(), sn, sn,
                                                                             e->d() + (size_t)c * e->step() * dn,
                                                                             e->step(), dn, dn, fm);
                                                  } });
                                else
                                    ps.push_back({ "libyuv RGBScale", [=] {
                                                      libyuv::RGBScale(s->d(), s->step(), sn, sn, e->d(), e->step(), dn,
                                                                       dn, fm);
                                                  } });
                            }
                            if (nch == 1 || planar)
                                ps.push_back({ it == 0       ? "zimg point"
                                                   : it == 1 ? "zimg bilinear"
                                                             : "zimg bicubic",
                                               zrun([=](zimg_image_format& p, zimg_image_format& q,
                                                        zimg_graph_builder_params& g) {
                                                   p.width = p.height = sn, q.width = q.height = dn;
                                                   p.pixel_type = q.pixel_type = ZIMG_PIXEL_BYTE;
                                                   p.color_family = q.color_family =
                                                       nch == 3 ? ZIMG_COLOR_RGB : ZIMG_COLOR_GREY;
                                                   if (nch == 3)
                                                       p.matrix_coefficients = q.matrix_coefficients = ZIMG_MATRIX_RGB;
                                                   g.resample_filter = it == 0 ? ZIMG_RESIZE_POINT
                                                       : it == 1               ? ZIMG_RESIZE_BILINEAR
                                                                               : ZIMG_RESIZE_BICUBIC;
                                               }) });
                            if (!planar) {
                                VipsImage* vs = vimg(s);
                                ps.push_back({ "libvips affine", vrun([=](VipsImage** o) {
                                                   VipsInterpolate* ip = vips_interpolate_new(kVipsInter[it]);
                                                   int r =
                                                       vips_affine(vs, o, sc, 0.0, 0.0, sc, "interpolate", ip, NULL);
                                                   g_object_unref(ip);
                                                   return r;
                                               }) });
                                LP ls = lept(s);
                                if (it == 0)
                                    ps.push_back({ "leptonica pixScaleBySampling",
                                                   lrun([=] { return pixScaleBySampling(ls.get(), sc, sc); }) });
                                if (it == 1 && nch == 1)
                                    ps.push_back(
                                        { up ? "leptonica pixScaleGray2xLI" : "leptonica pixScaleGrayLI", lrun([=] {
                                              return up ? pixScaleGray2xLI(ls.get()) : pixScaleGrayLI(ls.get(), sc, sc);
                                          }) });
                                if (it == 1 && nch == 3)
                                    ps.push_back(
                                        { up ? "leptonica pixScaleColor2xLI" : "leptonica pixScaleColorLI", lrun([=] {
                                              return up ? pixScaleColor2xLI(ls.get())
                                                        : pixScaleColorLI(ls.get(), sc, sc);
                                          }) });
                            }
                            if (it < 2 && nch == 3 && !planar) {
                                I s4 = pic(sn, sn, 4, D8U), d4 = img(dn, dn, 4, D8U);
                                auto p = pixm(PIXMAN_x8r8g8b8, sn, sn, s4->d(), s4->step()),
                                     q = pixm(PIXMAN_x8r8g8b8, dn, dn, d4->d(), d4->step());
                                pixman_transform_t t;
                                pixman_transform_init_scale(&t, pixman_double_to_fixed(1 / sc),
                                                            pixman_double_to_fixed(1 / sc));
                                pixman_image_set_transform(p.get(), &t);
                                pixman_image_set_filter(p.get(), it ? PIXMAN_FILTER_BILINEAR : PIXMAN_FILTER_NEAREST,
                                                        nullptr, 0);
                                pixman_image_set_repeat(p.get(), PIXMAN_REPEAT_PAD);
                                ps.push_back({ "pixman scale x8r8g8b8", [=] {
                                                  (void)s4;
                                                  (void)d4;
                                                  pixman_image_composite32(PIXMAN_OP_SRC, p.get(), nullptr, q.get(), 0,
                                                                           0, 0, 0, 0, 0, dn, dn);
                                              } });
                                ps.push_back({ "libyuv ARGBScale (4 bytes a pixel)", [=] {
                                                  libyuv::ARGBScale(s4->d(), s4->step(), sn, sn, d4->d(), d4->step(),
                                                                    dn, dn, fm);
                                              } });
                            }
                            bench(
                                "resize", nm, z, px, nch * ((double)sn * sn + px), "pxkResize",
                                [=] {
                                    FN("pxkResize", RS)
                                    (&s->h, &d->h, up ? 2 : 2, up ? 1 : 5, up ? 2 : 2, up ? 1 : 5, it);
                                },
                                ps,
                                up ? "taps equal; sample positions differ by a constant; pixels counted in the "
                                     "destination"
                                   : "libyuv, libvips, pixman, Leptonica: the same few taps; zimg widens its filter "
                                     "(more work); pixels counted in the destination");
                        }
                    }
        }
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        const double th = 30.0 * M_PI / 180, c = cos(th), sn = sin(th), ctr = (n - 1) / 2.0;
        for (int nch : { 3, 1 })
            for (int it = 0; it < 3; it++) {
                std::string nm = std::string("rotate 30 ") + kInter[it] + (nch == 3 ? " RGB" : " 8U");
                CASE("warp", nm, z)
                {
                    I s = pic(n, n, nch, D8U), d = img(n, n, nch, D8U);
                    VipsImage* vs = vimg(s);
                    LP ls = lept(s);
                    VipsArrayInt* oa = vips_array_int_newv(4, 0, 0, n, n);
                    double xs = ctr - ctr * c - ctr * sn, ys = ctr + ctr * sn - ctr * c;
                    std::vector<Peer> ps = { { "libvips affine", vrun([=](VipsImage** o) {
                                                   VipsInterpolate* ip = vips_interpolate_new(kVipsInter[it]);
                                                   int r = vips_affine(vs, o, c, sn, -sn, c, "interpolate", ip, "oarea",
                                                                       oa, "odx", xs, "ody", ys, NULL);
                                                   g_object_unref(ip);
                                                   return r;
                                               }) } };
                    if (it == 0)
                        ps.push_back({ "leptonica pixRotateBySampling", lrun([=] {
                                           return pixRotateBySampling(ls.get(), n / 2, n / 2, (float)th,
                                                                      L_BRING_IN_BLACK);
                                       }) });
                    if (it == 1)
                        ps.push_back({ "leptonica pixRotateAM", lrun([=] {
                                           return nch == 3 ? pixRotateAMColor(ls.get(), (float)th, 0)
                                                           : pixRotateAMGray(ls.get(), (float)th, 0);
                                       }) });
                    if (it < 2) {
                        int b4 = nch == 3 ? 4 : 1;
                        I s4 = pic(n, n, b4, D8U), d4 = img(n, n, b4, D8U);
                        pixman_format_code_t f = nch == 3 ? PIXMAN_a8r8g8b8 : PIXMAN_a8;
                        auto p = pixm(f, n, n, s4->d(), s4->step()), q = pixm(f, n, n, d4->d(), d4->step());
                        pixman_transform_t t;
                        pixman_f_transform_t ft;
                        pixman_f_transform_init_identity(&ft);
                        pixman_f_transform_rotate(&ft, nullptr, c, sn);
                        ft.m[0][2] = ctr - ctr * c + ctr * sn;
                        ft.m[1][2] = ctr - ctr * sn - ctr * c;
                        pixman_transform_from_pixman_f_transform(&t, &ft);
                        pixman_image_set_transform(p.get(), &t);
                        pixman_image_set_filter(p.get(), it ? PIXMAN_FILTER_BILINEAR : PIXMAN_FILTER_NEAREST, nullptr,
                                                0);
                        ps.push_back({ nch == 3 ? "pixman affine a8r8g8b8" : "pixman affine a8", [=] {
                                          (void)s4;
                                          (void)d4;
                                          pixman_image_composite32(PIXMAN_OP_SRC, p.get(), nullptr, q.get(), 0, 0, 0, 0,
                                                                   0, 0, n, n);
                                      } });
                    }
                    IF_HALIDE(if (it < 2) {
                        I e = img(n, n, nch, D8U);
                        auto hi = hb3(s->d(), n, n, s->step(), nch), ho = hb3(e->d(), n, n, e->step(), nch);
                        int x0 = (int)lrint((ctr - ctr * c + ctr * sn) * 65536),
                            y0 = (int)lrint((ctr - ctr * sn - ctr * c) * 65536), ca = (int)lrint(c * 65536),
                            sa = (int)lrint(sn * 65536);
                        auto f = nch == 3 ? (it ? hl_warp_lin3 : hl_warp_nn3) : (it ? hl_warp_lin1 : hl_warp_nn1);
                        ps.push_back({ "Halide 16.16 kernel", [=] {
                                          (void)e;
                                          f(hi->raw_buffer(), x0, y0, ca, sa, n, n, ho->raw_buffer());
                                      } });
                    })
                    bench(
                        "warp", nm, z, px, 2.0 * nch * px, "pxkRotate",
                        [=] {
                            FN("pxkRotate", void (*)(PxkImage*, PxkImage*, double, double, double, int32_t))
                            (&s->h, &d->h, 30.0, xs, ys, it);
                        },
                        ps,
                        "about 15% of the destination lies outside the source: the peers fill it, the library leaves "
                        "it; Leptonica and pixman weigh with few fraction bits and four bytes a pixel; Halide clamps "
                        "positions and weighs with 8 bits");
                    vips_area_unref((VipsArea*)oa);
                    g_object_unref(vs);
                }
            }
        for (int nch : { 1, 3 }) {
            const char* t = nch == 1 ? " 8U" : " RGB";
            I s = pic(n, n, nch, D8U), d = img(n, n, nch, D8U), e = img(n, n, nch, D8U);
            CASE("warp", std::string("rotate 90") + t, z)
            {
                VipsImage* vs = vimg(s);
                LP ls = lept(s);
                std::vector<Peer> ps = { { "libvips rot90",
                                           vrun([=](VipsImage** o) { return vips_rot90(vs, o, NULL); }) },
                                         { "leptonica pixRotate90", lrun([=] { return pixRotate90(ls.get(), 1); }) } };
                if (nch == 1)
                    ps.insert(ps.begin(), { "libyuv RotatePlane90", [=] {
                                               libyuv::RotatePlane90(s->d(), s->step(), e->d(), e->step(), n, n);
                                           } });
                else {
                    I s4 = pic(n, n, 4, D8U), d4 = img(n, n, 4, D8U);
                    ps.push_back({ "libyuv ARGBRotate (4 bytes a pixel)", [=] {
                                      libyuv::ARGBRotate(s4->d(), s4->step(), d4->d(), d4->step(), n, n,
                                                         libyuv::kRotate90);
                                  } });
                }
                bench(
                    "warp", std::string("rotate 90") + t, z, px, 2.0 * nch * px, "pxkRotate",
                    [=] {
                        FN("pxkRotate", void (*)(PxkImage*, PxkImage*, double, double, double, int32_t))
                        (&s->h, &d->h, 90.0, 0.0, n - 1.0, 0);
                    },
                    ps, "same moves; direction may differ");
                g_object_unref(vs);
            }
            CASE("warp", std::string("mirror") + t, z)
            {
                LP ls = lept(s), ld = lept(s);
                std::vector<Peer> ps;
                if (nch == 1)
                    ps.push_back({ "libyuv MirrorPlane",
                                   [=] { libyuv::MirrorPlane(s->d(), s->step(), e->d(), e->step(), n, n); } });
                else
                    ps.push_back({ "libyuv RGB24Mirror",
                                   [=] { libyuv::RGB24Mirror(s->d(), s->step(), e->d(), e->step(), n, n); } });
                ps.push_back({ "leptonica pixFlipLR", [=] { pixFlipLR(ld.get(), ls.get()); } });
                bench(
                    "warp", std::string("mirror") + t, z, px, 2.0 * nch * px, "pxkMirror",
                    [=] {
                        FN("pxkMirror", F2I)
                        (&s->h, &d->h, 1);
                    },
                    ps, "same", [=] { return diff<uint8_t>(d, e->d(), e->step(), 0); });
            }
            CASE("warp", std::string("remap linear") + t, z)
            {
                I mx = img(n, n, 1, D32F), my = img(n, n, 1, D32F);
                std::vector<float> both((size_t)2 * n * n);
                for (int y = 0; y < n; y++)
                    for (int x = 0; x < n; x++) { // a mild swirl that stays inside
                        double dx = (x - ctr) / ctr, dy = (y - ctr) / ctr, a = 0.35 * (1 - dx * dx) * (1 - dy * dy);
                        float u = (float)clip(ctr + ctr * (dx * cos(a) - dy * sin(a)), 0, n - 2),
                              v = (float)clip(ctr + ctr * (dx * sin(a) + dy * cos(a)), 0, n - 2);
                        ((float*)(mx->d() + (size_t)y * mx->step()))[x] = u;
                        ((float*)(my->d() + (size_t)y * my->step()))[x] = v;
                        both[2 * ((size_t)y * n + x)] = u, both[2 * ((size_t)y * n + x) + 1] = v;
                    }
                VipsImage *vs = vimg(s),
                          *vm =
                              vips_image_new_from_memory_copy(both.data(), both.size() * 4, n, n, 2, VIPS_FORMAT_FLOAT);
                VipsInterpolate* ip = vips_interpolate_new("bilinear");
                bench(
                    "warp", std::string("remap linear") + t, z, px, 2.0 * nch * px + 8 * px, "pxkRemap",
                    [=] {
                        FN("pxkRemap", void (*)(PxkImage*, PxkImage*, PxkImage*, PxkImage*, int32_t))
                        (&s->h, &mx->h, &my->h, &d->h, 1);
                    },
                    { { "libvips mapim bilinear",
                        vrun([=](VipsImage** o) { return vips_mapim(vs, o, vm, "interpolate", ip, NULL); }) } },
                    "same taps; the peer's map is interleaved");
                g_object_unref(vs);
                g_object_unref(vm);
                g_object_unref(ip);
            }
        }
    }
}

// ---- colour -------------------------------------------------------------------------------------------------
static void cases_colour()
{
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        I s = pic(n, n, 3, D8U), d = img(n, n, 3, D8U), g = img(n, n, 1, D8U), e = img(n, n, 1, D8U);
        I s4 = pic(n, n, 4, D8U), d4 = img(n, n, 4, D8U);
        LP ls = lept(s);
        VipsImage* vs = vimg(s);
        IF_HALIDE(I he = img(n, n, 3, D8U);
                  auto hsrc = hb3(s->d(), n, n, s->step(), 3), hdst = hb3(he->d(), n, n, he->step(), 3);)
        CASE("colour", "RGB to HSV", z)
        bench(
            "colour", "RGB to HSV", z, px, 6 * px, "pxkRGB2HSV",
            [=] {
                FN("pxkRGB2HSV", F2)
                (&s->h, &d->h);
            },
            { IF_HALIDE({ "Halide float kernel",
                          [=] {
                              (void)he;
                              hl_hsv(hsrc->raw_buffer(), hdst->raw_buffer());
                          } }, ) { "libvips sRGB2HSV",
                                   vrun([=](VipsImage** o) { return vips_sRGB2HSV(vs, o, NULL); }) },
              { "leptonica pixConvertRGBToHSV", lrun([=] { return pixConvertRGBToHSV(nullptr, ls.get()); }) } },
            "same model; hue scaled to 0..255 (libvips), 0..239 (Leptonica), 0..179 (library and Halide); rounding "
            "differs");
        auto zyuv = zrun([=](zimg_image_format& p, zimg_image_format& q, zimg_graph_builder_params&) {
            p.width = q.width = p.height = q.height = n;
            p.pixel_type = q.pixel_type = ZIMG_PIXEL_BYTE;
            p.color_family = ZIMG_COLOR_RGB, q.color_family = ZIMG_COLOR_YUV;
            p.matrix_coefficients = ZIMG_MATRIX_RGB, q.matrix_coefficients = ZIMG_MATRIX_BT470_BG;
        });
        I y0 = img(n, n, 3, D8U, PLANE);
        auto i444 = [=] {
            libyuv::ARGBToI444(s4->d(), s4->step(), y0->d(), n, y0->d() + n * n, n, y0->d() + 2 * n * n, n, n, n);
        };
        CASE("colour", "RGB to YCbCr", z)
        bench(
            "colour", "RGB to YCbCr", z, px, 6 * px, "pxkRGB2YCrCb",
            [=] {
                FN("pxkRGB2YCrCb", F2)
                (&s->h, &d->h);
            },
            { IF_HALIDE({ "Halide integer kernel",
                          [=] {
                              (void)he;
                              hl_ycc(hsrc->raw_buffer(), hdst->raw_buffer());
                          } }, ) { "libyuv ARGBToI444", i444 },
              { "zimg RGB to YUV planar", zyuv } },
            "Halide: the library's own integers on packed RGB; libyuv: four bytes in, planes out, limited range, 7-bit "
            "weights; zimg: planes in and out, in float");
        CASE("colour", "RGB to YCbCr planar", z)
        {
            I sp = pic(n, n, 3, D8U, 1, PLANE), dp = img(n, n, 3, D8U, PLANE);
            bench(
                "colour", "RGB to YCbCr planar", z, px, 6 * px, "pxkRGB2YCrCb",
                [=] {
                    FN("pxkRGB2YCrCb", F2)
                    (&sp->h, &dp->h);
                },
                { { "zimg RGB to YUV planar", zyuv }, { "libyuv ARGBToI444", i444 } },
                "zimg: same planes, float arithmetic; libyuv as above");
        }
        const int8_t cm[16] = { 20, 30, 10, 0, 5, 40, 15, 0, 12, 11, 38, 0, 0, 0, 0, 64 };
        B cmb = buf(16);
        memcpy(cmb->p, cm, 16);
        auto ycm = [=] {
            libyuv::ARGBColorMatrix(s4->d(), s4->step(), d4->d(), d4->step(), (const int8_t*)cmb->p, n, n);
        };
        double md[9] = { 0.412453, 0.35758, 0.180423, 0.212671, 0.71516, 0.072169, 0.019334, 0.119193, 0.950227 };
        VipsImage* vm = vips_image_new_matrix_from_array(3, 3, md, 9);
        L_KERNEL* lk = kernelCreate(3, 3);
        for (int i = 0; i < 9; i++) kernelSetElement(lk, i / 3, i % 3, (float)md[i]);
        auto lkp = std::shared_ptr<L_KERNEL>(lk, [](L_KERNEL* q) { kernelDestroy(&q); });
        auto vrec = vrun([=](VipsImage** o) {
            VipsImage* t;
            if (vips_recomb(vs, &t, vm, NULL)) return -1;
            int r = vips_cast_uchar(t, o, NULL);
            g_object_unref(t);
            return r;
        });
        auto lmm = lrun([=] { return pixMultMatrixColor(ls.get(), lkp.get()); });
        IF_HALIDE(auto xm = buf(18); const int16_t xw[9] = { 6758, 5859, 2956, 3484, 11717, 1182, 317, 1953, 15569 };
                  memcpy(xm->p, xw, 18); auto hxm = hb((int16_t*)xm->p, 3, 3, 6);)
        CASE("colour", "RGB to XYZ", z)
        bench(
            "colour", "RGB to XYZ", z, px, 6 * px, "pxkRGB2XYZ",
            [=] {
                FN("pxkRGB2XYZ", F2)
                (&s->h, &d->h);
            },
            { IF_HALIDE({ "Halide integer kernel",
                          [=] {
                              (void)he;
                              (void)xm;
                              hl_matrix_u8(hsrc->raw_buffer(), hxm->raw_buffer(), hdst->raw_buffer());
                          } }, ) { "libyuv ARGBColorMatrix (4 bytes a pixel)", ycm },
              { "libvips recomb and cast", vrec },
              { "leptonica pixMultMatrixColor", lmm } },
            "a 3x3 matrix in all; Halide the library's own integers, each output limited; libyuv 4x4 with 6-bit "
            "weights; libvips in double, Leptonica in float");
        CASE("colour", "colour matrix 8U", z)
        {
            typedef void* (*CT)(int32_t*, int32_t);
            int32_t m16[16] = { 6758, 5859, 2956, 0, 3484, 11717, 1182, 0, 317, 1953, 15569, 0, 0, 0, 0, 16384 };
            auto mk = fn<CT>("pxkCreateColorTwist");
            void* tw = mk ? mk(m16, 14) : nullptr;
            std::vector<Peer> ps = { { "libyuv ARGBColorMatrix (4 bytes a pixel)", ycm },
                                     { "libvips recomb and cast", vrec },
                                     { "leptonica pixMultMatrixColor", lmm } };
#ifdef PEERS_HALIDE
            I e3 = img(n, n, 3, D8U);
            auto mm = buf(18);
            for (int i = 0; i < 9; i++) ((int16_t*)mm->p)[i] = (int16_t)m16[i / 3 * 4 + i % 3];
            auto hi = hb(s->d(), n, n, s->step(), 3), ho = hb(e3->d(), n, n, e3->step(), 3);
            auto hm = hb((int16_t*)mm->p, 3, 3, 6);
            ps.push_back({ "Halide integer kernel", [=] {
                              (void)e3;
                              (void)mm;
                              hl_matrix_u8(hi->raw_buffer(), hm->raw_buffer(), ho->raw_buffer());
                          } });
#endif
            bench(
                "colour", "colour matrix 8U", z, px, 6 * px, "pxkCreateColorTwist pxkApplyColorTwist",
                [=] {
                    FN("pxkApplyColorTwist", void (*)(PxkImage*, PxkImage*, void*, int32_t))
                    (&s->h, &d->h, tw, 0);
                },
                ps,
                "as RGB to XYZ; the library's sums are told in double with truncation; Halide: 14-bit integer weights "
                "on packed RGB");
        }
        CASE("colour", "colour matrix 32F", z)
        {
            I f = pic(n, n, 3, D32F), fd = img(n, n, 3, D32F);
            VipsImage* vf = vimg(f);
            static float tw[12] = { 0.412453f, 0.35758f, 0.180423f, 1,         0.212671f, 0.71516f,
                                    0.072169f, 2,        0.019334f, 0.119193f, 0.950227f, 3 };
            std::vector<Peer> ps;
#ifdef PEERS_HALIDE
            I fe = img(n, n, 3, D32F);
            auto hi = hb(f->as<float>(), n, n, f->step(), 3), ho = hb(fe->as<float>(), n, n, fe->step(), 3),
                 hm = hb(tw, 4, 3, 16);
            ps.push_back({ "Halide kernel", [=] {
                              (void)fe;
                              hl_matrix_f32(hi->raw_buffer(), hm->raw_buffer(), ho->raw_buffer());
                          } });
#endif
            ps.push_back({ "libvips recomb float", vrun([=](VipsImage** o) { return vips_recomb(vf, o, vm, NULL); }) });
            bench(
                "colour", "colour matrix 32F", z, px, 24 * px, "pxkColorTwistFP",
                [=] {
                    FN("pxkColorTwistFP", void (*)(PxkImage*, PxkImage*, float*))
                    (&f->h, &fd->h, tw);
                },
                ps, "Halide: the same sums on packed RGB; libvips has no constant term and sums in double");
            g_object_unref(vf);
        }
        IF_HALIDE(auto hg = hb(e->d(), n, n, e->step());)
        CASE("colour", "RGB to gray", z)
        bench(
            "colour", "RGB to gray", z, px, 4 * px, "pxkColorToGray",
            [=] {
                FN("pxkColorToGray", F2)
                (&s->h, &g->h);
            },
            { IF_HALIDE({ "Halide integer kernel", [=] { hl_gray(hsrc->raw_buffer(), hg->raw_buffer()); } }, ) {
                  "libyuv RAWToJ400", [=] { libyuv::RAWToJ400(s->d(), s->step(), e->d(), e->step(), n, n); } },
              { "leptonica pixConvertRGBToLuminance", lrun([=] { return pixConvertRGBToLuminance(ls.get()); }) } },
            "Halide the library's own integers; libyuv same layout, weights 77 150 29 of 256 against 54 183 18");
        CASE("colour", "RGB to gray planar", z)
        {
            I sp = pic(n, n, 3, D8U, 1, PLANE), dp = img(n, n, 1, D8U, PLANE);
            auto zg = zrun([=](zimg_image_format& p, zimg_image_format& q, zimg_graph_builder_params&) {
                p.width = q.width = p.height = q.height = n;
                p.pixel_type = q.pixel_type = ZIMG_PIXEL_BYTE;
                p.color_family = ZIMG_COLOR_RGB, q.color_family = ZIMG_COLOR_GREY;
                p.matrix_coefficients = ZIMG_MATRIX_RGB, q.matrix_coefficients = ZIMG_MATRIX_BT470_BG;
            });
            IF_HALIDE(auto hp = hbp(sp->d(), n, n, sp->step(), 3);)
            bench(
                "colour", "RGB to gray planar", z, px, 4 * px, "pxkColorToGray",
                [=] {
                    FN("pxkColorToGray", F2)
                    (&sp->h, &dp->h);
                },
                { IF_HALIDE({ "Halide integer kernel, planes",
                              [=] { hl_gray_planar(hp->raw_buffer(), hg->raw_buffer()); } }, ) {
                      "libyuv RAWToJ400 (interleaved)",
                      [=] { libyuv::RAWToJ400(s->d(), s->step(), e->d(), e->step(), n, n); } },
                  { "zimg RGB to gray planar", zg } },
                "libyuv reads interleaved pixels; zimg reads planes in float");
        }
        g_object_unref(vm);
        g_object_unref(vs);
        CASE("dither", "Floyd-Steinberg 8U to 1U", z)
        {
            I a = pic(n, n, 1, D8U), o = img(n, n, 1, D1U);
            LP la = lept(a);
            auto zd = zrun([=](zimg_image_format& p, zimg_image_format& q, zimg_graph_builder_params& b) {
                p.width = q.width = p.height = q.height = n;
                p.pixel_type = q.pixel_type = ZIMG_PIXEL_BYTE;
                q.depth = 1;
                b.dither_type = ZIMG_DITHER_ERROR_DIFFUSION;
            });
            bench(
                "dither", "Floyd-Steinberg 8U to 1U", z, px, px + px / 8, "pxkReduceBits",
                [=] {
                    FN("pxkReduceBits", void (*)(PxkImage*, PxkImage*, int32_t, int32_t, int32_t))
                    (&a->h, &o->h, 0, 2, 1);
                },
                { { "leptonica pixDitherToBinary", lrun([=] { return pixDitherToBinary(la.get()); }) },
                  { "zimg error diffusion to 1 bit", zd } },
                "Leptonica: 3/8 3/8 1/4 weights, packed bits; zimg: full weights in float, one byte a pixel; the "
                "library also thresholds a second image");
        }
        CASE("palette", "median cut to 256", z)
        {
            struct Hdr {
                int32_t size, w, h;
                uint16_t planes, bits;
                int32_t comp, sz, xp, yp, used, imp;
                uint32_t pal[256];
            };
            auto hd = buf(sizeof(Hdr)), bits = buf((size_t)n * n);
            Hdr* H = (Hdr*)hd->p;
            H->size = 40, H->w = n, H->h = n, H->planes = 1, H->bits = 8;
            typedef int32_t (*TD)(PxkImage*, void*, void*, int32_t, int32_t);
            std::vector<Peer> ps = { { "leptonica pixMedianCutQuantGeneral",
                                       lrun([=] { return pixMedianCutQuantGeneral(ls.get(), 0, 8, 256, 6, 1, 0); }) },
                                     { "leptonica pixOctreeColorQuant",
                                       lrun([=] { return pixOctreeColorQuant(ls.get(), 240, 0); }) } };
            bench(
                "palette", "median cut to 256", z, px, 4 * px, "pxkConvertToDIBSep",
                [=] {
                    FN("pxkConvertToDIBSep", TD)
                    (&s->h, hd->p, bits->p, 1, 2);
                },
                ps,
                "Leptonica: 6 bits a channel as the library, its cells carry the index; the library looks for the "
                "nearest entry of every pixel; octree to 240 colours is another method");
        }
    }
}

// ---- statistics ---------------------------------------------------------------------------------------------
static void cases_stats()
{
    for (int n : kSizes) {
        std::string z = size_text(n, n);
        double px = (double)n * n;
        I a = pic(n, n, 1, D8U, 1), b = pic(n, n, 1, D8U, 2), d = img(n, n, 1, D8U);
        LP la = lept(a), lb = lept(b);
        VipsImage *va = vimg(a), *vb = vimg(b);
        auto kv = buf(4 * 257 * 3);
        int32_t* key = (int32_t*)kv->p;
        for (int i = 0; i < 257; i++) key[i] = i;
        auto lut = std::make_shared<PxkLUT>(PxkLUT { 257, key, key + 257, key + 514, 0 });
        auto lp = std::make_shared<PxkLUT*>(lut.get());
        CASE("stats", "histogram 8U", z)
        bench(
            "stats", "histogram 8U", z, px, px, "pxkComputeHisto",
            [=] {
                (void)kv;
                (void)lut;
                FN("pxkComputeHisto", void (*)(PxkImage*, PxkLUT**))(&a->h, lp.get());
            },
            { { "leptonica pixGetGrayHistogram",
                [=] {
                    NUMA* h = pixGetGrayHistogram(la.get(), 1);
                    numaDestroy(&h);
                } },
              { "libvips hist_find", vrun([=](VipsImage** o) { return vips_hist_find(va, o, NULL); }) } },
            "same 256 counts");
        CASE("stats", "equalise 8U", z)
        bench(
            "stats", "equalise 8U", z, px, 3 * px, "pxkComputeHisto pxkHistoEqualize",
            [=] {
                (void)kv;
                (void)lut;
                memset(lp.get()[0]->value, 0, 257 * 4);
                FN("pxkComputeHisto", void (*)(PxkImage*, PxkLUT**))(&a->h, lp.get());
                FN("pxkHistoEqualize", void (*)(PxkImage*, PxkImage*, PxkLUT**))(&a->h, &d->h, lp.get());
            },
            { { "leptonica pixEqualizeTRC", lrun([=] { return pixEqualizeTRC(nullptr, la.get(), 1.0f, 1); }) },
              { "libvips hist_equal", vrun([=](VipsImage** o) { return vips_hist_equal(va, o, NULL); }) } },
            "count, cumulate and map in all");
        typedef double (*NM)(PxkImage*, PxkImage*, int32_t);
        auto sink = buf(16);
        double* sk = (double*)sink->p;
        CASE("stats", "norm L2 of difference 8U", z)
        bench(
            "stats", "norm L2 of difference 8U", z, px, 2 * px, "pxkNorm",
            [=] {
                (void)sink;
                sk[0] = FN("pxkNorm", NM)(&a->h, &b->h, 4);
            },
            { { "libyuv ComputeSumSquareErrorPlane",
                [=] {
                    sk[1] =
                        sqrt((double)libyuv::ComputeSumSquareErrorPlane(a->d(), a->step(), b->d(), b->step(), n, n));
                } } },
            "same sum",
            [=] {
                char t[80];
                snprintf(t, sizeof t, "%.10g against %.10g", sk[0], sk[1]);
                return std::string(t);
            });
        IF_HALIDE(auto ha = hb(a->d(), n, n, a->step()), hbb = hb(b->d(), n, n, b->step());
                  auto r64 = hb0((uint64_t*)sink->p + 1); auto r8 = hb0(sink->p + 8);)
        CASE("stats", "norm L1 of difference 8U", z)
        bench(
            "stats", "norm L1 of difference 8U", z, px, 2 * px, "pxkNorm",
            [=] {
                (void)sink;
                sk[0] = FN("pxkNorm", NM)(&a->h, &b->h, 2);
            },
            { IF_HALIDE({ "Halide sum of absolute differences",
                          [=] { hl_sad8(ha->raw_buffer(), hbb->raw_buffer(), r64->raw_buffer()); } }, ) {
                  "leptonica pixCompareGray",
                  [=] {
                      l_int32 same;
                      l_float32 df, rms;
                      pixCompareGray(la.get(), lb.get(), L_COMPARE_ABS_DIFF, 0, &same, &df, &rms, nullptr);
                  } },
              { "libvips subtract abs avg",
                [=] {
                    VipsImage *t, *u;
                    double v;
                    vips_subtract(va, vb, &t, NULL);
                    vips_abs(t, &u, NULL);
                    vips_avg(u, &v, NULL);
                    g_object_unref(t), g_object_unref(u);
                } } },
            "Halide same sum; Leptonica also forms the difference image and its rms");
        CASE("stats", "norm inf of difference 8U", z)
        bench(
            "stats", "norm inf of difference 8U", z, px, 2 * px, "pxkNorm",
            [=] {
                FN("pxkNorm", NM)
                (&a->h, &b->h, 1);
            },
            { IF_HALIDE({ "Halide largest absolute difference",
                          [=] {
                              (void)sink;
                              hl_maxdiff8(ha->raw_buffer(), hbb->raw_buffer(), r8->raw_buffer());
                          } }, ) { "libvips subtract abs max",
                                   [=] {
                                       VipsImage *t, *u;
                                       double v;
                                       vips_subtract(va, vb, &t, NULL);
                                       vips_abs(t, &u, NULL);
                                       vips_max(u, &v, NULL);
                                       g_object_unref(t), g_object_unref(u);
                                   } } },
            "same value");
        CASE("stats", "norm L1 of difference 1U", z)
        {
            I x = pic(n, n, 1, D1U, 1), y = pic(n, n, 1, D1U, 2);
            bench(
                "stats", "norm L1 of difference 1U", z, px, px / 4, "pxkNorm",
                [=] {
                    (void)sink;
                    sk[0] = FN("pxkNorm", NM)(&x->h, &y->h, 2);
                },
                { { "libyuv ComputeHammingDistance",
                    [=] { sk[1] = (double)libyuv::ComputeHammingDistance(x->d(), y->d(), n / 8 * n); } } },
                "same count",
                [=] {
                    char t[80];
                    snprintf(t, sizeof t, "%.10g against %.10g", sk[0], sk[1]);
                    return std::string(t);
                });
        }
        CASE("stats", "min and max 32F", z)
        {
            I f = pic(n, n, 1, D32F);
            VipsImage* vf = vimg(f);
            auto mm = buf(16);
            IF_HALIDE(auto hf = hb(f->as<float>(), n, n, f->step()), r1 = hb0((float*)mm->p + 2),
                      r2 = hb0((float*)mm->p + 3);)
            bench(
                "stats", "min and max 32F", z, px, 4 * px, "pxkMinMaxFP",
                [=] {
                    float* p = (float*)mm->p;
                    FN("pxkMinMaxFP", int32_t(*)(PxkImage*, float*, float*))(&f->h, p, p + 1);
                },
                { IF_HALIDE({ "Halide one pass",
                              [=] {
                                  (void)mm;
                                  hl_minmax_f32(hf->raw_buffer(), r1->raw_buffer(), r2->raw_buffer());
                              } }, ) { "libvips stats",
                                       vrun([=](VipsImage** o) { return vips_stats(vf, o, NULL); }) } },
                "libvips also sums; see the Python part for NumPy");
            g_object_unref(vf);
        }
        g_object_unref(va);
        g_object_unref(vb);
    }
}

static void all_cases()
{
    fftwf_set_timelimit(8.0);
    cases_copy();
    cases_arith();
    cases_depth();
    cases_conv();
    cases_rank();
    cases_transform();
    cases_geometry();
    cases_colour();
    cases_stats();
}

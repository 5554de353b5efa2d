// SPDX-License-Identifier: BSD-2-Clause
// Emits the Halide peers as objects and headers into the directory given: vector code for stencils that no other peer
// vectorises. Every kernel reads a source that is already padded by its caller, so that no edge rule is inside.
// usage: halide_kernels DIR
#include <Halide.h>

#include <string>
#include <vector>
using namespace Halide;

static Target T;
static std::string dir;
static Var x("x"), y("y"), xo("xo"), yo("yo"), xi("xi"), yi("yi");

static void emit(Func f, std::vector<Argument> args, const std::string& name)
{
    f.compile_to(
        { { OutputFileType::object, dir + "/" + name + ".o" }, { OutputFileType::c_header, dir + "/" + name + ".h" } },
        args, name, T.with_feature(Target::NoRuntime).with_feature(Target::NoAsserts));
}

static void conv_u8(int k, bool narrow)
{ // narrow: all sums fit 16 bits
    ImageParam in(UInt(8), 2, "in"), K(Int(16), 2, "K");
    Param<int> sh("sh");
    Func acc("acc"), out("out");
    RDom r(0, k, 0, k);
    Type t = narrow ? Int(16) : Int(32);
    acc(x, y) = cast(t, 0);
    acc(x, y) += cast(t, in(x + r.x, y + r.y)) * cast(t, K(k - 1 - r.x, k - 1 - r.y));
    out(x, y) = cast<uint8_t>(clamp(acc(x, y) >> cast(t, sh), 0, 255));
    int vl = narrow ? 32 : 16, rows = 4;
    out.tile(x, y, xi, yi, 64, rows).vectorize(xi, 64).unroll(yi);
    acc.compute_at(out, x).vectorize(x, vl).unroll(x).unroll(y);
    acc.update().reorder(x, y, r.x, r.y).vectorize(x, vl).unroll(x).unroll(y);
    if (k <= 5)
        acc.update().unroll(r.x).unroll(r.y);
    else
        acc.update().unroll(r.x, 5);
    emit(out, { in, K, sh }, "hl_conv" + std::to_string(k) + (narrow ? "_u8_16" : "_u8_32"));
}
static void conv_f32(int k)
{
    ImageParam in(Float(32), 2, "in"), K(Float(32), 2, "K");
    Func acc("acc"), out("out");
    RDom r(0, k, 0, k);
    acc(x, y) = 0.f;
    acc(x, y) += in(x + r.x, y + r.y) * K(k - 1 - r.x, k - 1 - r.y);
    out(x, y) = acc(x, y);
    out.tile(x, y, xi, yi, 64, 4).vectorize(xi, 16).unroll(xi).unroll(yi);
    acc.compute_at(out, x).vectorize(x, 16).unroll(x).unroll(y);
    acc.update().reorder(x, y, r.x, r.y).vectorize(x, 16).unroll(x).unroll(y);
    if (k <= 5)
        acc.update().unroll(r.x).unroll(r.y);
    else
        acc.update().unroll(r.x, 5);
    emit(out, { in, K }, "hl_conv" + std::to_string(k) + "_f32");
}
static void rank_ext(int k, bool mx)
{ // separable; wide windows by doubling
    ImageParam in(UInt(8), 2, "in");
    auto op = [&](Expr a, Expr b) { return mx ? max(a, b) : min(a, b); };
    std::vector<Func> v, h;
    Func out("out"), vv("vv");
    auto stages = [&](std::function<Expr(Expr, int)> at, bool vertical,
                      std::vector<Func>& keep) -> std::function<Expr(int)> {
        std::function<Expr(int)> cur = [=](int d) { return at(Expr(), d); };
        int w = 1;
        while (2 * w <= k) {
            Func f;
            f(x, y) = op(cur(0), cur(w));
            keep.push_back(f);
            cur = [=](int d) { return vertical ? f(x, y + d) : f(x + d, y); };
            w *= 2;
        }
        int rest = k - w;
        if (rest == 0) return cur;
        return [=](int d) { return op(cur(d), cur(d + rest)); };
    };
    auto vs = stages([&](Expr, int d) { return in(x, y + d); }, true, v);
    vv(x, y) = vs(0);
    auto hs = stages([&](Expr, int d) { return vv(x + d, y); }, false, h);
    out(x, y) = hs(0);
    if (k == 3) {
        out.split(y, yo, yi, 8).split(x, xo, xi, 64).reorder(xi, xo, yi, yo).vectorize(xi);
        vv.compute_at(out, yi).vectorize(x, 64);
    } else {
        out.tile(x, y, xo, yo, xi, yi, 512, 32, TailStrategy::GuardWithIf).vectorize(xi, 64);
        for (Func& f : v) f.compute_at(out, xo).vectorize(x, 64);
        vv.compute_at(out, xo).vectorize(x, 64);
        for (Func& f : h) f.compute_at(out, yi).vectorize(x, 64);
    }
    emit(out, { in }, std::string(mx ? "hl_max" : "hl_min") + std::to_string(k));
}
static void median3()
{
    ImageParam in(UInt(8), 2, "in");
    Func lo("lo"), mi("mi"), hi("hi"), out("out");
    Expr a = in(x, y), b = in(x, y + 1), c = in(x, y + 2);
    lo(x, y) = min(min(a, b), c);
    hi(x, y) = max(max(a, b), c);
    mi(x, y) = max(min(a, b), min(max(a, b), c));
    auto med = [](Expr p, Expr q, Expr r) { return max(min(p, q), min(max(p, q), r)); };
    Expr l = max(max(lo(x, y), lo(x + 1, y)), lo(x + 2, y));
    Expr m = med(mi(x, y), mi(x + 1, y), mi(x + 2, y));
    Expr h = min(min(hi(x, y), hi(x + 1, y)), hi(x + 2, y));
    out(x, y) = med(l, m, h);
    out.vectorize(x, 64);
    lo.compute_at(out, y).vectorize(x, 64);
    mi.compute_at(out, y).vectorize(x, 64);
    hi.compute_at(out, y).vectorize(x, 64);
    emit(out, { in }, "hl_median3");
}
static void pointwise()
{
    ImageParam a(Int(16), 2, "a"), b(Int(16), 2, "b"), u(UInt(8), 2, "u");
    Param<uint8_t> t("t");
    Func s("s"), d("d"), th("th");
    s(x, y) = saturating_cast<int16_t>(cast<int32_t>(a(x, y)) + cast<int32_t>(b(x, y)));
    s.vectorize(x, 32);
    emit(s, { a, b }, "hl_add16s");
    d(x, y) = saturating_cast<int16_t>(cast<int32_t>(a(x, y)) - cast<int32_t>(b(x, y)));
    d.vectorize(x, 32);
    emit(d, { a, b }, "hl_sub16s");
    th(x, y) = select(u(x, y) >= t, cast<uint8_t>(255), cast<uint8_t>(0));
    th.vectorize(x, 64);
    emit(th, { u, t }, "hl_thr8");
}
static void matrix_f32()
{
    ImageParam in(Float(32), 3, "in"), m(Float(32), 2, "m");
    Var c("c");
    Func out("out");
    out(x, y, c) = m(0, c) * in(x, y, 0) + m(1, c) * in(x, y, 1) + m(2, c) * in(x, y, 2) + m(3, c);
    in.dim(0).set_stride(3).dim(2).set_stride(1);
    out.output_buffer().dim(0).set_stride(3).dim(2).set_stride(1).set_bounds(0, 3);
    out.reorder(c, x, y).unroll(c).vectorize(x, 16);
    emit(out, { in, m }, "hl_matrix_f32");
}
static void matrix_u8()
{
    ImageParam in(UInt(8), 3, "in"), m(Int(16), 2, "m");
    Var c("c");
    Func out("out");
    auto w = [&](Expr p, Expr q) { return cast<int32_t>(cast<int16_t>(p)) * cast<int32_t>(q); };
    out(x, y, c) = cast<uint8_t>(
        clamp((w(in(x, y, 0), m(0, c)) + w(in(x, y, 1), m(1, c)) + w(in(x, y, 2), m(2, c)) + 8192) >> 14, 0, 255));
    in.dim(0).set_stride(3).dim(2).set_stride(1);
    out.output_buffer().dim(0).set_stride(3).dim(2).set_stride(1).set_bounds(0, 3);
    out.reorder(c, x, y).unroll(c).vectorize(x, 32);
    emit(out, { in, m }, "hl_matrix_u8");
}

static void colour()
{
    for (int what = 0; what < 2; what++) { // 0 HSV, 1 YCbCr, packed RGB to packed
        ImageParam in(UInt(8), 3, "in");
        Var c("c");
        Func t("t"), out("out");
        Expr R = cast<int32_t>(in(x, y, 0)), G = cast<int32_t>(in(x, y, 1)), B = cast<int32_t>(in(x, y, 2));
        if (what == 0) {
            Expr mx = max(R, G, B), mn = min(R, G, B), dc = mx - mn;
            Expr s = select(mx == 0, 0, cast<int32_t>(cast<float>(dc * 255) / cast<float>(max(mx, 1))));
            Expr num = select(mx == R, G - B, mx == G, B - R, R - G), off = select(mx == R, 0.f, mx == G, 120.f, 240.f);
            Expr h = cast<float>(num * 60) / cast<float>(max(dc, 1)) + off;
            h = select(h < 0.f, h + 360.f, h);
            t(x, y) =
                Tuple(cast<uint8_t>(select(s == 0, 0, cast<int32_t>(h) >> 1)), cast<uint8_t>(s), cast<uint8_t>(mx));
        } else {
            Expr Y = (4898 * R + 9617 * G + 1867 * B + 8192) >> 14;
            t(x, y) = Tuple(cast<uint8_t>(Y), cast<uint8_t>(clamp(((B - Y) * 9246 + 2097152) >> 14, 0, 255)),
                            cast<uint8_t>(clamp(((R - Y) * 11686 + 2097152) >> 14, 0, 255)));
        }
        out(x, y, c) = select(c == 0, t(x, y)[0], c == 1, t(x, y)[1], t(x, y)[2]);
        in.dim(0).set_stride(3).dim(2).set_stride(1);
        out.output_buffer().dim(0).set_stride(3).dim(2).set_stride(1).set_bounds(0, 3);
        out.split(x, xo, xi, 64).reorder(c, xi, xo, y).bound(c, 0, 3).unroll(c).vectorize(xi);
        t.compute_at(out, xo).vectorize(x, 16).unroll(x);
        emit(out, { in }, what == 0 ? "hl_hsv" : "hl_ycc");
    }
    ImageParam in(UInt(8), 3, "in"), p(UInt(8), 3, "p");
    auto gray = [](ImageParam q) {
        Func g;
        g(x, y) = cast<uint8_t>((cast<uint16_t>(q(x, y, 0)) * cast<uint16_t>(54)
                                 + cast<uint16_t>(q(x, y, 1)) * cast<uint16_t>(183)
                                 + cast<uint16_t>(q(x, y, 2)) * cast<uint16_t>(18))
                                >> 8);
        g.vectorize(x, 64);
        return g;
    };
    in.dim(0).set_stride(3).dim(2).set_stride(1);
    emit(gray(in), { in }, "hl_gray");
    emit(gray(p), { p }, "hl_gray_planar");
}
static void warp()
{ // 16.16 positions, clamped into the source; packed channels
    for (int nch : { 1, 3 })
        for (int lin = 0; lin < 2; lin++) {
            ImageParam in(UInt(8), 3, "in");
            Param<int> x0("x0"), y0("y0"), ca("ca"), sa("sa"), w("w"), h("h");
            Var c("c");
            Func out("out");
            Expr px = x0 + ca * x - sa * y, py = y0 + sa * x + ca * y;
            if (!lin) {
                Expr ix = unsafe_promise_clamped(clamp((px + 32768) >> 16, 0, w - 1), 0, w - 1),
                     iy = unsafe_promise_clamped(clamp((py + 32768) >> 16, 0, h - 1), 0, h - 1);
                out(x, y, c) = in(ix, iy, c);
            } else {
                Expr ix = unsafe_promise_clamped(clamp(px >> 16, 0, w - 2), 0, w - 2),
                     iy = unsafe_promise_clamped(clamp(py >> 16, 0, h - 2), 0, h - 2);
                Expr fx = (px >> 8) & 255, fy = (py >> 8) & 255;
                auto I32 = [](Expr e) { return cast<int32_t>(e); };
                Expr a = I32(in(ix, iy, c)), b = I32(in(ix + 1, iy, c)), d = I32(in(ix, iy + 1, c)),
                     e = I32(in(ix + 1, iy + 1, c));
                Expr u = a * 256 + (b - a) * fx, v = d * 256 + (e - d) * fx;
                out(x, y, c) = cast<uint8_t>((u * 256 + (v - u) * fy + 32768) >> 16);
            }
            in.dim(0).set_stride(nch).dim(2).set_stride(1);
            out.output_buffer().dim(0).set_stride(nch).dim(2).set_stride(1).set_bounds(0, nch);
            out.reorder(c, x, y).bound(c, 0, nch).unroll(c).vectorize(x, 16);
            emit(out, { in, x0, y0, ca, sa, w, h },
                 std::string(lin ? "hl_warp_lin" : "hl_warp_nn") + std::to_string(nch));
        }
}
static void reductions()
{ // row results in an array, then over the rows
    ImageParam a(UInt(8), 2, "a"), b(UInt(8), 2, "b"), f(Float(32), 2, "f");
    RDom rx(0, a.width()), ry(0, a.height());
    Func rows("rows"), out("out");
    rows(y) = cast<uint32_t>(0);
    rows(y) += cast<uint32_t>(absd(a(rx, y), b(rx, y)));
    out() = cast<uint64_t>(0);
    out() += cast<uint64_t>(rows(ry));
    rows.compute_root();
    rows.update().atomic().vectorize(rx, 64);
    emit(out, { a, b }, "hl_sad8");
    Func rmax("rmax"), omax("omax");
    rmax(y) = cast<uint8_t>(0);
    rmax(y) = max(rmax(y), absd(a(rx, y), b(rx, y)));
    omax() = cast<uint8_t>(0);
    omax() = max(omax(), rmax(ry));
    rmax.compute_root();
    rmax.update().atomic().vectorize(rx, 64);
    emit(omax, { a, b }, "hl_maxdiff8");
    RDom q(0, f.width() / 64, 0, f.height());
    RVar fx = q.x, fy = q.y;
    Var l("l");
    Func part("part"), mm("mm");
    part(l) = Tuple(f(0, 0), f(0, 0));
    part(l) = Tuple(min(part(l)[0], f(fx * 64 + l, fy)), max(part(l)[1], f(fx * 64 + l, fy)));
    RDom rl(0, 64);
    mm() = Tuple(f(0, 0), f(0, 0));
    mm() = Tuple(min(mm()[0], part(rl)[0]), max(mm()[1], part(rl)[1]));
    part.compute_root().bound(l, 0, 64).vectorize(l, 16);
    part.update().reorder(l, fx, fy).vectorize(l, 16).unroll(l);
    emit(mm, { f }, "hl_minmax_f32");
}

int main(int argc, char** argv)
{
    dir = argc > 1 ? argv[1] : ".";
    T = get_host_target();
    for (int k : { 3, 5, 15 }) conv_u8(k, false), conv_f32(k);
    for (int k : { 3, 5 }) conv_u8(k, true);
    for (int k : { 3, 7, 31 }) rank_ext(k, true), rank_ext(k, false);
    median3();
    pointwise();
    matrix_f32();
    matrix_u8();
    colour();
    warp();
    reductions();
    compile_standalone_runtime(dir + "/hl_runtime.o", T);
    return 0;
}

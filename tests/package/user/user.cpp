// SPDX-License-Identifier: BSD-2-Clause
// A stranger's program in C++.
#include <cstdio>

#include <pxk/pxk.hpp>

int main()
{
    const PxkLibVersion* const version = pxkGetLibVersion();
    std::printf("pxk %d.%d.%d\n", int(version->major), int(version->minor), int(version->build));
    const pxk::Image image(pxk::gray(), 3, 2, 7);
    pxk::call(pxkAddS, image, image.region({ 1, 0, 1, 1 }), 5);
    return pxk::call(pxkNorm, image, nullptr, PXK_NORM_L1) == 47 ? 0 : 1;
}

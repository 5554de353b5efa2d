// SPDX-License-Identifier: BSD-2-Clause
#include "frame/ownversion.h"

#include "pxk/pxk.h"

static constexpr PxkLibVersion ownLibVersion = {
    2, 1, 58, "pxkQ6.dll", OWN_VERSION_TEXT, "[2.1.058, 02/02/99]", "Feb  6 1999", "DLL"
};

const PxkLibVersion* pxkGetLibVersion(void)
{
    return &ownLibVersion;
}

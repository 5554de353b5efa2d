#include <stdio.h>

#include <pxk/pxk.h>

int main(void)
{
    const PxkLibVersion* version = pxkGetLibVersion();
    printf("pxk %d.%d.%d\n", (int)version->major, (int)version->minor, (int)version->build);
    pxkSetErrStatus(PXK_StsNoMem);
    return pxkGetErrStatus() == PXK_StsNoMem ? 0 : 1;
}

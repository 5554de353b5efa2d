#include "pxk/pxk.h"
void pxkDCT2D(PxkImage*, PxkImage*, int32_t){}
void pxkMpyRCPack2D(PxkImage*, PxkImage*, PxkImage* ){}

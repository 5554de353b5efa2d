/* SPDX-License-Identifier: BSD-2-Clause */
// The conversions between colour models: what a model is, and the frame of the operations.
#pragma once

#include <cstddef>

#include "frame/ownreport.h"

// ---- models --------------------------------------------------------------------------------------------------------

// Converts n pixels: three rows of one channel each, then the three rows of the result, which may be the same ones.
using OwnColourRow = void (*)(uint8_t* const* rows, ptrdiff_t n);

// The rows of one direction. Null: the depth is not taken.
struct OwnColourRows {
    OwnColourRow of8U = nullptr;
    OwnColourRow of16U = nullptr;
    OwnColourRow of32S = nullptr;
    OwnColourRow of32F = nullptr;
};

struct OwnColourModel {
    char word[4]; // in colorModel and channelSeq
    const char* depthFault;
    OwnColourRows fromRgb;
    OwnColourRows toRgb;
    bool hasDepthTest = false; // of both images, in front of the test of all that must agree
};

extern const OwnColourModel ownHlsModel;
extern const OwnColourModel ownHsvModel;
extern const OwnColourModel ownLuvModel;
extern const OwnColourModel ownXyzModel;
extern const OwnColourModel ownYccModel;
extern const OwnColourModel ownYcrcbModel;
extern const OwnColourModel ownYuvModel;

// The faults of most models.
constexpr char ownDepthFault32F[] = "Error input depth. 32F, 32S ,16U,8U are valid now";
constexpr char ownDepthFault32S[] = "Error input depth. 32S,16U,8U are valid now";

// ---- operations ----------------------------------------------------------------------------------------------------

struct OwnColourImages {
    PxkImage* src;
    PxkImage* dst;
};

// The whole of an operation: checks, reports, the model's word in the destination's header, and the work.
void ownConvertFromRgb(const OwnSite& site, const OwnColourImages& images, const OwnColourModel& model);
void ownConvertToRgb(const OwnSite& site, const OwnColourImages& images, const OwnColourModel& model);
void ownConvertToGray(const OwnSite& site, const OwnColourImages& images);
void ownConvertFromGray(const OwnSite& site, const OwnColourImages& images, float red, float green, float blue);

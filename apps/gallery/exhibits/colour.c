// Colour models and twists
// The three channels of each model side by side, the way back, gray, and matrices on the
// colours of a pixel.
#include "exhibit.h"

// The three channels of an image, as gray pictures beside each other.
static PxkImage* newChannels(PxkImage* image)
{
    PxkImage* wide = newImage(1, PXK_DEPTH_8U, 3 * w, h);
    PxkROI from = { 1, 0, 0, w, h }, to = { 0, 0, 0, w, h };
    image->roi = &from;
    wide->roi = &to;
    for (; from.coi <= 3; from.coi++, to.xOffset += w) pxkCopy(image, wide);
    image->roi = NULL;
    wide->roi = NULL;
    return wide;
}

// Hue, saturation, value
// Hue goes round the circle from red, which is black, in 180 steps.
EXHIBIT(colour_hsv, PICTURE)
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkRGB2HSV(photo, model);
    STOP;
    out = newChannels(model);
}

// Another hue, and back
// 40 of 180 steps further; saturation and value stay.
EXHIBIT(colour_hsv_back, PAIR(photo))
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI channel = { 1, 0, 0, w, h };
    pxkRGB2HSV(photo, model);
    model->roi = &channel;
    pxkAddS(model, model, 40);
    model->roi = NULL;
    START;
    pxkHSV2RGB(model, out);
    STOP;
}

// Hue, lightness, saturation
// White and black meet at the ends of lightness.
EXHIBIT(colour_hls, PICTURE)
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkRGB2HLS(photo, model);
    STOP;
    out = newChannels(model);
}

// Less saturation, and back
// Half of it, at the same lightness.
EXHIBIT(colour_hls_back, PAIR(photo))
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI channel = { 3, 0, 0, w, h };
    pxkRGB2HLS(photo, model);
    model->roi = &channel;
    pxkRShiftS(model, model, 1);
    model->roi = NULL;
    START;
    pxkHLS2RGB(model, out);
    STOP;
}

// XYZ
// Tristimulus values; Y is the luminance.
EXHIBIT(colour_xyz, PICTURE)
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkRGB2XYZ(photo, model);
    STOP;
    out = newChannels(model);
}

// More Z, and back
// 40 more of what blue gives most to.
EXHIBIT(colour_xyz_back, PAIR(photo))
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI channel = { 3, 0, 0, w, h };
    pxkRGB2XYZ(photo, model);
    model->roi = &channel;
    pxkAddS(model, model, 40);
    model->roi = NULL;
    START;
    pxkXYZ2RGB(model, out);
    STOP;
}

// YUV
// Luma and two differences around 127.
EXHIBIT(colour_yuv, PICTURE)
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkRGB2YUV(photo, model);
    STOP;
    out = newChannels(model);
}

// Without V, and back
// 127 stands for no difference.
EXHIBIT(colour_yuv_back, PAIR(photo))
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI channel = { 3, 0, 0, w, h };
    pxkRGB2YUV(photo, model);
    model->roi = &channel;
    pxkSet(model, 127);
    model->roi = NULL;
    START;
    pxkYUV2RGB(model, out);
    STOP;
}

// YCrCb
// Luma, red less the luma and blue less the luma, around 128.
EXHIBIT(colour_ycrcb, PICTURE)
{
    PxkImage* model = newImage(3, PXK_DEPTH_8U, w, h);
    START;
    pxkRGB2YCrCb(photo, model);
    STOP;
    out = newChannels(model);
}

// Without chroma detail
// Cb and Cr blurred over 15 x 15 pixels, which hardly shows.
EXHIBIT(colour_ycrcb_back, PAIR(photo))
{
    PxkImage* sharp = newImage(3, PXK_DEPTH_8U, w, h);
    PxkImage* soft = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI luma = { 1, 0, 0, w, h };
    pxkRGB2YCrCb(photo, sharp);
    pxkRGB2YCrCb(photo, soft);
    pxkBlur(sharp, soft, 15, 15, 7, 7);
    sharp->roi = soft->roi = &luma;
    pxkCopy(sharp, soft);
    soft->roi = NULL;
    START;
    pxkYCrCb2RGB(soft, out);
    STOP;
}

// LUV
// In floats; shown from -60 to 160.
EXHIBIT(colour_luv, PICTURE)
{
    PxkImage* rgb = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* luv = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* shown = newImage(3, PXK_DEPTH_8U, w, h);
    pxkScaleFP(photo, rgb, 0.0f, 1.0f);
    START;
    pxkRGB2LUV(rgb, luv);
    STOP;
    pxkScaleFP(luv, shown, -60.0f, 160.0f);
    out = newChannels(shown);
}

// Lighter in LUV, and back
// 12 added to lightness, which goes from 0 to 100.
EXHIBIT(colour_luv_back, PAIR(photo))
{
    PxkImage* rgb = newImage(3, PXK_DEPTH_32F, w, h);
    PxkImage* luv = newImage(3, PXK_DEPTH_32F, w, h);
    PxkROI lightness = { 1, 0, 0, w, h };
    pxkScaleFP(photo, rgb, 0.0f, 1.0f);
    pxkRGB2LUV(rgb, luv);
    luv->roi = &lightness;
    pxkAddSFP(luv, luv, 12.0f);
    luv->roi = NULL;
    START;
    pxkLUV2RGB(luv, rgb);
    STOP;
    pxkScaleFP(rgb, out, 0.0f, 1.0f);
}

// YCC to RGB
// The constants of this one give full blue and nearly full red everywhere: only green
// follows the luma, here with C1 at its highest and C2 at its lowest.
EXHIBIT(colour_ycc, PICTURE)
{
    PxkImage* ycc = newImage(3, PXK_DEPTH_8U, w, h);
    PxkROI channel = { 1, 0, 0, w, h };
    ycc->roi = &channel;
    pxkCopy(gray, ycc);
    channel.coi = 2;
    pxkSet(ycc, 255);
    ycc->roi = NULL;
    memcpy(ycc->colorModel, "YCC", 4);
    memcpy(ycc->channelSeq, "YCC", 4);
    START;
    pxkYCC2RGB(ycc, out);
    STOP;
}

// Gray
// 54 red, 183 green and 18 blue of 256.
EXHIBIT(colour_gray, PICTURE)
{
    out = newImage(1, PXK_DEPTH_8U, w, h);
    START;
    pxkColorToGray(photo, out);
    STOP;
}

// Gray to bits
// The upper half of gray.
EXHIBIT(colour_bits, PICTURE)
{
    out = newImage(1, PXK_DEPTH_1U, w, h);
    START;
    pxkColorToGray(photo, out);
    STOP;
}

// Tinted
// Gray times a weight for red, green and blue.
EXHIBIT(colour_tinted, PICTURE)
{
    START;
    pxkGrayToColor(gray, out, 0.95f, 0.8f, 0.55f);
    STOP;
}

// Twist: sepia
// A matrix with 12 fraction bits; rows are blue, green and red here.
EXHIBIT(colour_sepia, PICTURE)
{
    int32_t matrix[16] = { 537, 2187, 1114, 0, 688, 2810, 1430, 0,
                           774, 3150, 1610, 0, 0,   0,    0,    0 };
    PxkColorTwist* sepia = pxkCreateColorTwist(matrix, 12);
    START;
    pxkApplyColorTwist(photo, out, sepia, 0);
    STOP;
    pxkDeleteColorTwist(sepia);
}

// Twist: stronger colours
// Away from gray by 0.6, inside the ellipse.
EXHIBIT(colour_stronger, PICTURE)
{
    int32_t matrix[16] = { 16, -5, -1, 0, -2, 13, -1, 0, -2, -5, 17, 0, 0, 0, 0, 0 };
    PxkColorTwist* stronger;
    int i;
    for (i = 0; i < 16; i++) matrix[i] = matrix[i] * 4096 / 10;
    stronger = pxkCreateColorTwist(matrix, 12);
    pxkCopy(photo, out);
    out->maskROI = ellipse;
    START;
    pxkApplyColorTwist(photo, out, stronger, 0);
    STOP;
    pxkDeleteColorTwist(stronger);
}

// Twist: negative with an offset
// Factors of -1 and a constant of 255, then 40 less.
EXHIBIT(colour_negative, PICTURE)
{
    int32_t identity[16] = { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0 };
    int32_t negative[16] = { -1, 0, 0, 255, 0, -1, 0, 255, 0, 0, -1, 255, 0, 0, 0, 0 };
    PxkColorTwist* twist = pxkCreateColorTwist(identity, 0);
    pxkSetColorTwist(twist, negative, 0);
    START;
    pxkApplyColorTwist(photo, out, twist, -40);
    STOP;
    pxkDeleteColorTwist(twist);
}

// Twist in floats
// Green and red change places, blue becomes half.
EXHIBIT(colour_floats, PICTURE)
{
    PxkImage* floats = newImage(3, PXK_DEPTH_32F, w, h);
    float swap[12] = { 0.5f, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0 };
    pxkScaleFP(photo, floats, 0.0f, 1.0f);
    START;
    pxkColorTwistFP(floats, floats, swap);
    STOP;
    pxkScaleFP(floats, out, 0.0f, 1.0f);
}

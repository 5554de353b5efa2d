#include "gallery.h"

namespace gallery {

// The three channels of an image, as gray pictures beside each other.
static void showChannels(Stage& s, PxkImage* image)
{
    const int32_t width = image->width, height = image->height;
    PxkImage* const wide = s.blank(1, PXK_DEPTH_8U, 3 * width, height);
    for (int32_t c = 0; c < 3; ++c) {
        PxkROI from = { c + 1, 0, 0, width, height };
        PxkROI to = { 0, c * width, 0, width, height };
        image->roi = &from;
        wide->roi = &to;
        pxkCopy(image, wide);
    }
    image->roi = wide->roi = nullptr;
    s.picture(wide);
}

// A matrix of numbers as a record with 12 fraction bits.
struct Twist {
    explicit Twist(const double (&matrix)[12])
    {
        int32_t data[16] = {};
        for (int k = 0; k < 12; ++k) data[k] = static_cast<int32_t>(matrix[k] * 4096);
        record = pxkCreateColorTwist(data, 12);
    }
    Twist(const Twist&) = delete;
    Twist& operator=(const Twist&) = delete;
    ~Twist() { pxkDeleteColorTwist(record); }
    PxkColorTwist* record;
};

const Exhibit exhibits[] = {
    { "Hue, saturation, value", "Hue goes round the circle from red, which is black, in 180 steps.",
      [](Stage& s, PxkImage* photo, PxkImage* hsv) {
          MEASURE(s, pxkRGB2HSV(photo, hsv));
          showChannels(s, hsv);
      } },
    { "Hue, lightness, saturation", "White and black meet at the ends of lightness.",
      [](Stage& s, PxkImage* photo, PxkImage* hls) {
          MEASURE(s, pxkRGB2HLS(photo, hls));
          showChannels(s, hls);
      } },
    { "XYZ", "Tristimulus values; Y is the luminance.",
      [](Stage& s, PxkImage* photo, PxkImage* xyz) {
          MEASURE(s, pxkRGB2XYZ(photo, xyz));
          showChannels(s, xyz);
      } },
    { "LUV", "In floats; shown from -60 to 160.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* rgb = s.blank(3, PXK_DEPTH_32F, photo->width, photo->height);
          PxkImage* luv = s.like(rgb);
          pxkScaleFP(photo, rgb, 0.0f, 1.0f);
          MEASURE(s, pxkRGB2LUV(rgb, luv));
          pxkScaleFP(luv, out, -60.0f, 160.0f);
          showChannels(s, out);
      } },
    { "YUV", "Luma and two differences around 127.",
      [](Stage& s, PxkImage* photo, PxkImage* yuv) {
          MEASURE(s, pxkRGB2YUV(photo, yuv));
          showChannels(s, yuv);
      } },
    { "YCrCb", "Luma, blue and red less the luma, around 128.",
      [](Stage& s, PxkImage* photo, PxkImage* ycrcb) {
          MEASURE(s, pxkRGB2YCrCb(photo, ycrcb));
          showChannels(s, ycrcb);
      } },
    { "There and back", "Through hue, lightness and saturation: the hue's steps of two degrees are what is lost.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* hls = s.like(photo);
          SHOW(s, out, pxkRGB2HLS(photo, hls); pxkHLS2RGB(hls, out));
      } },
    { "Without chroma detail", "Cb and Cr blurred over 15 x 15 pixels, which hardly shows.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage *sharp = s.like(photo), *soft = s.like(photo);
          PxkROI luma = { 1, 0, 0, photo->width, photo->height };
          PxkROI* y = &luma;
          pxkSetBorderMode(sharp, PXK_EDGE_CLAMP, PXK_SIDE_TOP | PXK_SIDE_BOTTOM | PXK_SIDE_LEFT | PXK_SIDE_RIGHT, 0);
          SHOW(s, out, pxkRGB2YCrCb(photo, sharp); pxkRGB2YCrCb(photo, soft); pxkBlur(sharp, soft, 15, 15, 7, 7);
               sharp->roi = soft->roi = y; pxkCopy(sharp, soft); soft->roi = nullptr; pxkYCrCb2RGB(soft, out));
      } },
    { "Gray", "54 red, 183 green and 18 blue of 256.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* gray = s.like(s.gray);
          SHOW(s, gray, pxkColorToGray(photo, gray));
      } },
    { "Gray to bits", "The upper half of gray.",
      [](Stage& s, PxkImage* photo, PxkImage*) {
          PxkImage* bits = s.like(s.ellipse);
          SHOW(s, bits, pxkColorToGray(photo, bits));
      } },
    { "Tinted", "Gray times a weight for each channel.",
      [](Stage& s, PxkImage*, PxkImage* out) {
          PxkImage* gray = s.gray;
          SHOW(s, out, pxkGrayToColor(gray, out, 0.95f, 0.8f, 0.55f));
      } },
    { "Twist: sepia", "A matrix with 12 fraction bits; rows are blue, green and red here.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Twist twist({ 0.131, 0.534, 0.272, 0, 0.168, 0.686, 0.349, 0, 0.189, 0.769, 0.393, 0 });
          PxkColorTwist* sepia = twist.record;
          SHOW(s, out, pxkApplyColorTwist(photo, out, sepia, 0));
      } },
    { "Twist: stronger colours", "Away from gray by 0.8, inside the ellipse.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Twist twist({ 1.6, -0.5, -0.1, 0, -0.2, 1.3, -0.1, 0, -0.2, -0.5, 1.7, 0 });
          PxkColorTwist* stronger = twist.record;
          pxkCopy(photo, out);
          out->maskROI = s.ellipse;
          SHOW(s, out, pxkApplyColorTwist(photo, out, stronger, 0));
      } },
    { "Twist: negative with an offset", "Factors of -1 and a constant of 255, then 40 less.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          const Twist twist({ -1, 0, 0, 255, 0, -1, 0, 255, 0, 0, -1, 255 });
          PxkColorTwist* negative = twist.record;
          SHOW(s, out, pxkApplyColorTwist(photo, out, negative, -40));
      } },
    { "Twist in floats", "Green and red change places, blue becomes half.",
      [](Stage& s, PxkImage* photo, PxkImage* out) {
          PxkImage* floats = s.blank(3, PXK_DEPTH_32F, photo->width, photo->height);
          const float swap[12] = { 0.5f, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0 };
          pxkScaleFP(photo, floats, 0.0f, 1.0f);
          SHOW(s, out, pxkColorTwistFP(floats, floats, swap); pxkScaleFP(floats, out, 0.0f, 1.0f));
      } },
};

const Family colourFamily = { "colour", "Colour models and twists",
                              "The three channels of each model, gray, and matrices on the colours of a pixel.",
                              exhibits, std::size(exhibits) };

} // namespace gallery

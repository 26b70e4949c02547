#include <libyuv.h>

#include "adapters.h"
#include "row.h"

/// One 32-bit picture drawn on another.
namespace bench {
namespace {

constexpr POINT corner{0, 0};

struct Composite {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);  ///< both pictures
  void (*ours)(Dib to, Dib from, Dib mask);
  const char* peer;
  std::function<void()> (*with)(cv::Mat to, cv::Mat from, cv::Mat mask);
  Agreement agreement = same;
  bool repeatable = false;
};

std::function<void()> detour(cv::Mat to, cv::Mat from, cv::Mat) { return overByDetour(from, to, to); }

std::function<void()> sdlBlend(cv::Mat to, cv::Mat from, cv::Mat) {
  const Surface in = surfaceOf(from, nullptr);
  SDL_SetSurfaceBlendMode(in.get(), SDL_BLENDMODE_BLEND);
  return [in, out = surfaceOf(to, nullptr)] { SDL_BlitSurface(in.get(), nullptr, out.get(), nullptr); };
}

std::function<void()> yuvBlend(cv::Mat to, cv::Mat from, cv::Mat) {
  return yuv<libyuv::ARGBBlend>(from, to, to);
}

std::function<void()> pixmanOver(cv::Mat to, cv::Mat from, cv::Mat mask) {
  return [in = pixmanOf(from), through = pixmanOf(mask), out = pixmanOf(to)] {
    compose(PIXMAN_OP_OVER, in, through, out);
  };
}

std::function<void()> pixmanCopy(cv::Mat to, cv::Mat from, cv::Mat) {
  return [in = pixmanOf(from), out = pixmanOf(to)] { compose(PIXMAN_OP_SRC, in, nullptr, out); };
}

template <auto operation>
void full(Dib to, Dib from, Dib) {
  operation(to, corner, from, corner, 0);
}

constexpr const char* detourName = "premultiply, pixman OVER, unpremultiply";
constexpr Agreement premultiplied = incomparable("the detour loses bits");
constexpr Agreement mixesAlpha = incomparable("the peer takes premultiplied colours");

constexpr Composite composites[] = {
    {"CombineBlock", "photo", photo, full<CDIB32::CombineBlock>, detourName, detour, premultiplied},
    {"CombineBlock",
     "cartoon",
     cartoon,
     full<CDIB32::CombineBlock>,
     detourName,
     detour,
     {"the detour loses bits", 1}},
    {"CombineBlock", "cartoon", cartoon, full<CDIB32::CombineBlock>, "SDL blend", sdlBlend, same},
    {"BitBlt32DIBPlain", "photo", photo, full<CDIB32::BitBlt32DIBPlain>, detourName, detour, premultiplied},
    {"BitBlt32DIBMMX", "photo", photo, full<CDIB32::BitBlt32DIBMMX>, "libyuv ARGBBlend", yuvBlend,
     mixesAlpha},
    {"BitBlt32DIBMMX", "cartoon", cartoon, full<CDIB32::BitBlt32DIBMMX>, "libyuv ARGBBlend", yuvBlend,
     mixesAlpha},
    {"Mix32BitsDIBMMX", "photo", photo, full<CDIB32::Mix32BitsDIBMMX>, "libyuv ARGBBlend", yuvBlend,
     mixesAlpha},
    {"Mix32BitsDIBMMX_Mask", "photo", photo,
     [](Dib to, Dib from, Dib mask) {
       CDIB32::Mix32BitsDIBMMX_Mask(to, corner, from, corner, 0, mask, corner);
     },
     "pixman OVER with a mask", pixmanOver, mixesAlpha},
    {"TransformBlock", "photo", photo,
     [](Dib to, Dib from, Dib) { CDIB32::TransformBlock(to, corner, from, corner); }, "pixman SRC",
     pixmanCopy, same, true},
    {"CopyBlock", "photo", photo, full<CDIB32::CopyBlock>, "pixman SRC", pixmanCopy, same, true},
    {"CopyBlock, reduction 9",
     "photo",
     photo,
     [](Dib to, Dib from, Dib) { CDIB32::CopyBlock(to, corner, from, corner, 9); },
     "pixman SRC",
     pixmanCopy,
     {"the peer keeps alpha", 0, 0, false},
     true},
    {"TransformAlphaChannelBlock", "photo", photo,
     [](Dib to, Dib from, Dib) { CDIB32::TransformAlphaChannelBlock(to, corner, from, corner); },
     "libyuv ARGBCopyAlpha",
     [](cv::Mat to, cv::Mat from, cv::Mat) { return yuv<libyuv::ARGBCopyAlpha>(from, to); }, same, true},
};

void add(Rows& rows, const Composite& row) {
  rows.push_back({row.name, row.picture, row.peer, row.agreement.difference, [&row](Size size) {
                    const auto [width, height] = size;
                    const std::shared_ptr<BITMAPINFOHEADER> to = row.make(width, height);
                    const std::shared_ptr<BITMAPINFOHEADER> from = row.make(width, height);
                    const std::shared_ptr<BITMAPINFOHEADER> mask = brush8(width, height);
                    const cv::Mat result = matOf(to.get());
                    return changingTrial(
                        to, [&row, to, from, mask] { row.ours(to.get(), from.get(), mask.get()); },
                        row.with(result, matOf(from.get()), matOf(mask.get())), result, row.agreement,
                        row.repeatable);
                  }});
}

OwnedDib combined(Dib bottom, Dib top) {
  OwnedDib out;
  POINT origin;
  CDIB32::CombineDIBs(bottom, corner, 0, top, corner, 0, dibkit::out(out), &origin);
  return out;
}

}  // namespace

void addComposites(Rows& rows) {
  for (const Composite& row : composites) add(rows, row);
  rows.push_back({"CombineDIBs", "photo", detourName, premultiplied.difference, [](Size size) {
                    const std::shared_ptr<BITMAPINFOHEADER> bottom = photo(size.width, size.height);
                    const std::shared_ptr<BITMAPINFOHEADER> top = photo(size.width, size.height);
                    const cv::Mat result(size.height, size.width, CV_8UC4);
                    return makingTrial([=] { return combined(bottom.get(), top.get()); },
                                       overByDetour(matOf(top.get()), matOf(bottom.get()), result), result,
                                       premultiplied);
                  }});
  rows.push_back({"BitBlt8BitsDIB", "photo", "SDL INDEX8 to ARGB", "", [](Size size) {
                    const std::shared_ptr<BITMAPINFOHEADER> to = opaquePhoto(size.width, size.height);
                    const std::shared_ptr<BITMAPINFOHEADER> from = gray8(size.width, size.height);
                    const cv::Mat result = matOf(to.get());
                    return changingTrial(
                        to, [=] { CDIB32::BitBlt8BitsDIB(to.get(), corner, from.get(), nullptr, corner); },
                        sdlBlit(from.get(), matOf(from.get()), result), result, same, true);
                  }});
}

}  // namespace bench

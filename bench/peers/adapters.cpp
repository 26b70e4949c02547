#include "adapters.h"

#include <libyuv.h>

namespace bench {

cv::Mat paletteMat(Dib dib) {
  cv::Mat map(256, 1, CV_8UC3, cv::Scalar::all(0));
  const dibkit::PaletteTable palette(dib);
  for (int i = 0; i < 256; ++i) {
    const RGBQUAD entry = palette[static_cast<BYTE>(i)];
    map.at<cv::Vec3b>(i) = {entry.rgbBlue, entry.rgbGreen, entry.rgbRed};
  }
  return map;
}

PixmanImage pixmanOf(const cv::Mat& mat) {
  const pixman_format_code_t format = mat.channels() == 4   ? PIXMAN_a8r8g8b8
                                      : mat.channels() == 3 ? PIXMAN_r8g8b8
                                                            : PIXMAN_a8;
  pixman_image_t* image = pixman_image_create_bits(format, mat.cols, mat.rows,
                                                   reinterpret_cast<std::uint32_t*>(mat.data), stepOf(mat));
  return PixmanImage(image, [mat](pixman_image_t* owned) { pixman_image_unref(owned); });
}

PixmanImage pixmanBits(const cv::Mat& mask) {
  pixman_image_t* image = pixman_image_create_bits(PIXMAN_a1, mask.cols, mask.rows, nullptr, 0);
  auto* words = pixman_image_get_data(image);
  const int stride = pixman_image_get_stride(image) / 4;
  for (int y = 0; y < mask.rows; ++y) {
    for (int x = 0; x < mask.cols; ++x) {
      if (mask.at<BYTE>(y, x) != 0) words[y * stride + x / 32] |= 1U << x % 32;
    }
  }
  return PixmanImage(image, pixman_image_unref);
}

void compose(pixman_op_t operation, const PixmanImage& from, const PixmanImage& mask, const PixmanImage& to) {
  pixman_image_composite32(operation, from.get(), mask.get(), to.get(), 0, 0, 0, 0, 0, 0,
                           pixman_image_get_width(to.get()), pixman_image_get_height(to.get()));
}

std::function<void()> overByDetour(cv::Mat from, cv::Mat bottom, cv::Mat to) {
  cv::Mat premultiplied(from.size(), from.type());
  return [=, top = pixmanOf(premultiplied), canvas = pixmanOf(to),
          premultiplyTop = yuv<libyuv::ARGBAttenuate>(from, premultiplied),
          premultiplyBottom = yuv<libyuv::ARGBAttenuate>(bottom, to),
          divide = yuv<libyuv::ARGBUnattenuate>(to, to)] {
    premultiplyTop();
    premultiplyBottom();
    compose(PIXMAN_OP_OVER, top, nullptr, canvas);
    divide();
  };
}

Surface surfaceOf(const cv::Mat& mat, Dib palette) {
  const Uint32 format = mat.type() == CV_8UC2 ? SDL_PIXELFORMAT_RGB555
                        : mat.channels() == 4 ? SDL_PIXELFORMAT_ARGB8888
                        : mat.channels() == 3 ? SDL_PIXELFORMAT_BGR24
                                              : SDL_PIXELFORMAT_INDEX8;
  SDL_Surface* surface = SDL_CreateRGBSurfaceWithFormatFrom(
      mat.data, mat.cols, mat.rows, static_cast<int>(8 * mat.elemSize()), stepOf(mat), format);
  if (format == SDL_PIXELFORMAT_INDEX8) {
    const dibkit::PaletteTable entries(palette);
    for (int i = 0; i < 256; ++i) {
      const RGBQUAD entry = entries[static_cast<BYTE>(i)];
      surface->format->palette->colors[i] = {entry.rgbRed, entry.rgbGreen, entry.rgbBlue, 255};
    }
  }
  return Surface(surface, [mat](SDL_Surface* owned) { SDL_FreeSurface(owned); });
}

std::function<void()> sdlBlit(Dib source, cv::Mat from, cv::Mat to) {
  return [in = surfaceOf(from, source), out = surfaceOf(to, nullptr)] {
    SDL_BlitSurface(in.get(), nullptr, out.get(), nullptr);
  };
}

}  // namespace bench

#pragma once

#include <SDL.h>
#include <pixman.h>

#include "row.h"

/// The peers' images, made around a matrix of the same pixels, and calls of them.
namespace bench {

/// A value that is computed for nothing else.
template <class Value>
void keep(const Value& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

inline int stepOf(const cv::Mat& mat) { return static_cast<int>(mat.step); }

/// An operation of libyuv on one picture, and on two.
template <auto operation>
std::function<void()> yuv(cv::Mat from, cv::Mat to) {
  return [=] { operation(from.data, stepOf(from), to.data, stepOf(to), to.cols, to.rows); };
}
template <auto operation>
std::function<void()> yuv(cv::Mat first, cv::Mat second, cv::Mat to) {
  return [=] {
    operation(first.data, stepOf(first), second.data, stepOf(second), to.data, stepOf(to), to.cols, to.rows);
  };
}

/// The colours of an image's palette, as applyColorMap takes them.
cv::Mat paletteMat(Dib dib);

/// \name pixman
/// @{
using PixmanImage = std::shared_ptr<pixman_image_t>;
/// An image of 8, 24 or 32 bits, whose pixels the matrix keeps.
PixmanImage pixmanOf(const cv::Mat& mat);
/// A bitmap of one bit a pixel, from a matrix of 0 and 255.
PixmanImage pixmanBits(const cv::Mat& mask);
void compose(pixman_op_t operation, const PixmanImage& from, const PixmanImage& mask, const PixmanImage& to);

/// Straight colours over straight colours: both are premultiplied, composited and divided again. `work` has
/// room for the source.
std::function<void()> overByDetour(cv::Mat from, cv::Mat bottom, cv::Mat to);
/// @}

/// \name SDL
/// @{
using Surface = std::shared_ptr<SDL_Surface>;
/// A surface over a matrix; the palette is that of an image of 8 bits.
Surface surfaceOf(const cv::Mat& mat, Dib palette);
/// Draws one surface on another, converted to its format.
std::function<void()> sdlBlit(Dib source, cv::Mat from, cv::Mat to);
/// @}

}  // namespace bench

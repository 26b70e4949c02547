#pragma once

#include "dib/dib.h"

/// \file
/// Water ripples over a 32-bit picture. Round drops raise a height field, which moves on as a damped wave;
/// its slopes displace the picture's pixels and light them.
///
/// \code
/// CRippleEffect water(picture, 0);
/// water.StartToRipple();
/// for (int i = 0; i < count; ++i) frames.emplace_back(water.NextToRipple());
/// water.EndToRipple();
/// \endcode
///
/// Threads: an object and its copies serve one thread at a time, different objects any; HeightBlob draws from
/// the C library's generator if a coordinate is negative. Aliasing: the picture is only read, results are
/// new. Sizes: as in dibkit.h. Cost: a wave step visits every pixel once; an object that runs holds two
/// numbers of 32 bits for each.

namespace dibkit {
struct HeightPage;
}

/// An animation of water. StartToRipple makes the height field, NextToRipple gives a frame as often as
/// wanted, and EndToRipple releases the field. Always call that: the destructor releases nothing, since
/// copies share the height field. GenerateRippleEffect() makes one picture and needs none of the three.
class DIBKIT_API CRippleEffect {
 public:
  CRippleEffect() {}
  /// \param source 32 bits; not copied, so it has to live until the object gets another one
  /// \param iterations rounds of four wave steps that GenerateRippleEffect() runs
  CRippleEffect(BITMAPINFOHEADER* source, int iterations);
  /// Copies share the height field with their original; only one of them may end the run.
  CRippleEffect(const CRippleEffect&) = default;
  CRippleEffect& operator=(const CRippleEffect&) = default;
  virtual ~CRippleEffect();

  /// Sets the picture. A running object keeps its height field, so the picture has to have the size of the
  /// one before.
  void InitializeParams(BITMAPINFOHEADER* source);

  /// Adds a disc to a page of the height field, except to its outermost rows and columns.
  /// \param x,y centre; a negative one becomes random, from the C library's generator, clear of the border
  /// \param radius cells nearer to the centre than this belong to the disc
  /// \param height what each cell gains
  /// \param page 0 the first field, else the second
  void HeightBlob(int x, int y, int radius, int height, int page);

  /// One wave step: each cell of the page becomes a quarter of the sum of its eight neighbours on the other
  /// page, less its own height, damped. The outermost cells are unchanged.
  ///
  /// \param page the one that is written: 0 the first field, else the second
  /// \param density the wave loses its height divided by 2 to the power of this, 0 to 31
  void CalcWater(int page, int density);
  /// The same over 5 x 5 cells: rounder waves, for hosts; the library itself uses CalcWater.
  void CalcWaterBigFilter(int page, int density);
  /// Makes both pages level.
  void FlattenWater();

  /// Renders the first page of the water, also if the second was written last. Both arguments are ignored.
  /// The outermost pixels are the source's; all others are opaque.
  ///
  /// \return a new image, owned by the caller; null for an idle object or when memory runs out
  BITMAPINFOHEADER* GenerateRippleEffect(int page, int flag);
  /// The picture under a small drop at its centre and drops every 100 pixels, after the given rounds, or
  /// after fewer if the water has come to rest. An animation that runs is not disturbed.
  ///
  /// \return a new image, owned by the caller; null for a source that is not 32-bit or when memory runs out
  BITMAPINFOHEADER* GenerateRippleEffect();

  /// Subtracts `shift` from each channel, clamped to 0 to 255.
  void GetShiftedColor(BYTE* red, BYTE* green, BYTE* blue, int shift);

  /// Starts an animation from level water with drops every 100 pixels.
  void StartToRipple();
  /// Runs one round and renders it.
  /// \return a new image, owned by the caller; null for an idle object or when memory runs out
  BITMAPINFOHEADER* NextToRipple();
  /// Ends the animation and releases the height field.
  void EndToRipple();

 private:
  using WaveStep = void(const dibkit::HeightPage& page, const dibkit::HeightPage& other, int density);

  bool AllocateField();
  dibkit::HeightPage Field(int page) const;
  void Step(WaveStep* step, int page, int density);
  void RunRound();

  BITMAPINFOHEADER* m_pSrcDib = nullptr;  ///< not owned
  int m_nIterations = 0;
  int m_nWidth = 0;
  int m_nHeight = 0;
  int m_nPage = 0;  ///< the page that the next step writes
  int m_nDensity = 5;
  int* m_pFirst = nullptr;
  int* m_pSecond = nullptr;
  // Last, behind what hosts know: the size that the height field was made for.
  int m_nFieldWidth = 0;
  int m_nFieldHeight = 0;
};

/// The picture under water, as CRippleEffect::GenerateRippleEffect() makes it.
/// \param source 32 bits; only read
/// \param iterations rounds of four wave steps
/// \return a new image, owned by the caller; null for a source that is not 32-bit or when memory runs out
DIBKIT_API BITMAPINFOHEADER* GenerateRippleEffect(BITMAPINFOHEADER* source, int iterations);

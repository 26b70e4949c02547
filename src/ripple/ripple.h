#pragma once

#include "dib/dib.h"

/// \file
/// Water over a 32-bit picture. A field of heights is excited with round drops and advanced as a damped wave;
/// its slopes displace the picture's pixels and light them.

namespace dibkit {
struct HeightPage;
}

/// One run of the water. It goes from idle (no height field) through StartToRipple to running, any number of
/// NextToRipple, and through EndToRipple back to idle; GenerateRippleEffect() makes one picture and needs
/// none of these. Running objects have to be ended: the destructor releases nothing, since copies share the
/// height field.
class DIBKIT_API CRippleEffect {
 public:
  CRippleEffect() {}
  /// \param source 32 bits, borrowed until the object is given another one
  /// \param iterations rounds of four wave steps that GenerateRippleEffect() runs
  CRippleEffect(BITMAPINFOHEADER* source, int iterations);
  /// Copies share the height field with their original; only one of them may end the run.
  CRippleEffect(const CRippleEffect&) = default;
  CRippleEffect& operator=(const CRippleEffect&) = default;
  virtual ~CRippleEffect();

  /// Gives the object a picture. A running object keeps its height field, so the picture has to have the size
  /// of the one before.
  void InitializeParams(BITMAPINFOHEADER* source);

  /// Adds a disc to a page of the height field; its outermost lines and columns stay as they are.
  /// \param x,y centre; a negative one is drawn at random with the C library's generator, clear of the border
  /// \param radius cells nearer to the centre than this belong to the disc
  /// \param height what each cell gains
  /// \param page 0 the first field, else the second
  void HeightBlob(int x, int y, int radius, int height, int page);

  /// One wave step: each cell of the page becomes a quarter of its eight neighbours' sum on the other page
  /// less its own height, damped. The outermost cells stay.
  ///
  /// \param page the one that is written: 0 the first field, else the second
  /// \param density the wave loses its height divided by 2 to the power of this, 0 to 31
  void CalcWater(int page, int density);
  /// The same over 5 x 5 cells: rounder waves, for the application; the library takes CalcWater.
  void CalcWaterBigFilter(int page, int density);
  /// Levels both pages.
  void FlattenWater();

  /// Renders the water as it is. Both arguments are ignored, and the first field is the one shown, whichever
  /// was written last. The outermost pixels are the source's; all others are opaque.
  ///
  /// \return a new image, owned by the caller; null for an idle object or when memory runs out
  BITMAPINFOHEADER* GenerateRippleEffect(int page, int flag);
  /// The picture under a small drop at its centre and drops every 100 pixels, after the given rounds. An
  /// animation that runs is not disturbed.
  ///
  /// \return a new image, owned by the caller; null for a source that is not 32-bit or when memory runs out
  BITMAPINFOHEADER* GenerateRippleEffect();

  /// Takes `shift` from each channel, kept within 0 to 255.
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

/// The picture under water: see CRippleEffect::GenerateRippleEffect().
/// \param source 32 bits; only read
/// \param iterations rounds of four wave steps
DIBKIT_API BITMAPINFOHEADER* GenerateRippleEffect(BITMAPINFOHEADER* source, int iterations);

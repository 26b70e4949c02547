#pragma once

#include "dib/dib.h"

/// \file
/// Transitions between two animation frames. For each stage the library makes one picture: the part of the
/// incoming frame that shows at that stage, and where it goes. The host lays it over the outgoing frame.
/// `effects/catalogue.h` names the effects and says which parameters a stage takes.

/// What an effect gives for one stage.
struct EffectOutput {
  /// The piece: a new 32-bit image, opacity 0 where nothing shows. Owned by whoever holds the record.
  BITMAPINFOHEADER* image;
  /// Where the piece goes, in pixels from the top-left pixel of the frame.
  RECT rect;
};

/// What all effects are: objects that are made for one stage, told their two parameters, asked once, and
/// deleted.
class DIBKIT_API CGeneralEffectFrame {
 public:
  CGeneralEffectFrame() {}
  /// \param source the incoming frame, 32 bits; borrowed for the life of the object
  explicit CGeneralEffectFrame(BITMAPINFOHEADER* source) : m_pSrcDib(source) {}
  CGeneralEffectFrame(const CGeneralEffectFrame&) = delete;
  CGeneralEffectFrame& operator=(const CGeneralEffectFrame&) = delete;

  // Hosts call these three by their slots: the order is part of the interface.
  virtual ~CGeneralEffectFrame();
  /// Makes the piece of the stage.
  /// \return not 0 when the record was written; this class makes nothing
  virtual BOOL GenerateFrame(EffectOutput* output);
  /// Takes the style and the amount: an effect with styles takes the style first, one without takes the
  /// amount first and ignores the second; this class ignores both.
  virtual void SetParameters(long a, long b);

 protected:
  BITMAPINFOHEADER* m_pSrcDib = nullptr;
};

/// Makes one stage of a numbered transition.
///
/// | effect | a | b |
/// |---|---|---|
/// | 10 halves slide in | 0 horizontally, 1 vertically | percent |
/// | 11 bars of 4 pixels slide in | 0 horizontally, 1 vertically | percent |
/// | 12 slides in | from 0 left, 1 top left, 2 top, 3 top right, 4 right, ... 7 bottom left | percent |
/// | 13 grows from the centre | 0 circle, 1 rectangle, 2 ellipse, 3 rounded rectangle, 4 diamond | percent |
/// | 14 one-pixel strips | 0 columns, 1 rows, sweeping from 2 left, 3 right, 4 top, 5 bottom | percent |
/// | 15 venetian blind | 0 vertical slats, else horizontal ones | percent |
///
/// Effect 14 draws from the C library's generator, which it seeds from the picture's size: equal arguments
/// give equal pieces and a larger amount shows all that a smaller one does, but two of them must not run
/// at the same time.
/// \param effect number of the effect
/// \param source the incoming frame, 32 bits; only read
/// \param a,b style and amount, as the table says; an amount outside its range is harmless
/// \param outImage receives the piece, owned by the caller
/// \param outRect receives the piece's place in the frame
/// \return 1; or 0 with neither pointer written for an unknown effect or style, a stage that shows nothing at
///         all, an image that is not a 32-bit one with pixels, or when memory runs out
DIBKIT_API int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b,
                                  BITMAPINFOHEADER** outImage, RECT* outRect);

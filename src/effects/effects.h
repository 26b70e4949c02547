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
/// | 0 swings shut like a door | hinge: 0 left, 1 top, 2 right, 3 bottom | angle in degrees, 0 is shut |
/// | 1 a clock hand | 0 counter-clockwise, else clockwise | angle in degrees |
/// | 2 a clock hand in each of ten by ten tiles | as 1 | angle in degrees |
/// | 3 five-pointed star | percent | |
/// | 4 spiral | 1 clockwise, else counter-clockwise | angle in degrees, two to three turns |
/// | 5 cells at random | percent | |
/// | 6 cells, sweeping | from 0 left, 1 top, 2 right, 3 bottom | percent |
/// | 7 turns about a centre line | 0 the horizontal one, 1 the vertical one | angle in degrees, 0 is flat |
/// | 8 film | 0 by rows, 1 by columns | percent |
/// | 9 four-pointed star | half opening in pixels | |
/// | 10 halves slide in | 0 horizontally, 1 vertically | percent |
/// | 11 bars of 4 pixels slide in | 0 horizontally, 1 vertically | percent |
/// | 12 slides in | from 0 left, 1 top left, 2 top, 3 top right, 4 right, ... 7 bottom left | percent |
/// | 13 grows from the centre | 0 circle, 1 rectangle, 2 ellipse, 3 rounded rectangle, 4 diamond | percent |
/// | 14 one-pixel strips | 0 columns, 1 rows, sweeping from 2 left, 3 right, 4 top, 5 bottom | percent |
/// | 15 venetian blind | 0 vertical slats, else horizontal ones | percent |
/// | 16 thaws out of blocks | percent, 0 is sharp | |
/// | 17 unrolls like a carpet | from 0 left, 1 top, 2 right, 3 bottom | percent |
///
/// An amount outside its range is harmless and as a rule counts as the nearer end; the door, the centre line
/// and the clock hands take any angle. Effects 5 and 6 show the whole picture above 100 percent, whatever
/// their cells leave.
///
/// Effects 5, 6 and 14 draw from the C library's generator, which they seed from the picture's size: equal
/// arguments give equal pieces and a larger amount shows all that a smaller one does, but two of them must
/// not run at the same time.
///
/// Two effects have a place of their own: that of 1 may reach out of the frame where the piece doesn't, and
/// 16 gives 1 even when memory ran out and the piece is null.
///
/// Film (8), for a picture of extent n across the lines that are drawn and front = n x percent / 100,
/// truncated: the piece has the picture's size; its lines before the front are the picture's, all others
/// repeat the picture's line number `front`. Nothing is made at 0 percent.
///
/// Carpet (17), for a picture of extent n across its roll, lines counted from the side that it starts at:
/// flat = n x percent / 100, truncated, lines lie flat and are the picture's. Then come the
/// roll = n x (100 - percent) / 1000 lines, rounded up, of the roll. Line k of it, with
/// v = (2 k + 1 - roll) / roll, shows the picture's line flat + roll / 2 x (1 + pi - asin v), truncated, at
/// most n - 1, its colours times light / 255, truncated, light = 64 + (191 x square root of (1 - v x v),
/// truncated). The piece is these lines, at the side that they start at; opacity is the source's.
///
/// \param effect number of the effect
/// \param source the incoming frame, 32 bits; only read
/// \param a,b style and amount, as the table says
/// \param outImage receives the piece, owned by the caller
/// \param outRect receives the piece's place in the frame
/// \return 1; or 0 with neither pointer written for an unknown effect or style, a stage that shows nothing
///         at all, an image that is not a 32-bit one with pixels, or when memory runs out
DIBKIT_API int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b,
                                  BITMAPINFOHEADER** outImage, RECT* outRect);

/// Makes one whole frame of a transition through concentric diamond bands. In the first half the bands fade
/// from the outgoing picture to the incoming one, in the second half the gaps between them follow.
///
/// \param incoming 32 bits; its opacity is not looked at
/// \param outgoing 32 bits, with no fewer pixels than the incoming one, read as if it had its size; ignored
///        when useColour is set
/// \param colour a COLORREF that stands for the outgoing picture
/// \param useColour not 0 to fade from the colour
/// \param percent 0 to 100; others still give a frame, with the low byte of their weight
/// \return a new opaque image of the incoming one's size, owned by the caller; null for unusable images or
///         when memory runs out
DIBKIT_API BITMAPINFOHEADER* DiamondEffectDIB(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                              unsigned long colour, int useColour, int percent);

/// Makes one whole frame of a transition in which the incoming picture pushes the outgoing one out of the
/// frame.
///
/// With dx = width x percent / 100 and dy = height x percent / 100, truncated, the incoming picture shows
/// where effect 12 would show it, the part of it that effect 12 would show. The outgoing picture moves the
/// same way, by dx where the incoming one moves sideways and by dy where it moves up or down. From a corner
/// it leaves room beside the incoming picture, and there its mirror image continues it: from the left, column
/// dx - 1 is like column dx, dx - 2 like dx + 1 and so on, and the other sides likewise. So every pixel is
/// one of a picture's, opacity and all.
///
/// \param incoming,outgoing 32 bits, of one size
/// \param direction 0 to 7, where the incoming picture comes from, numbered as for effect 12
/// \param percent 0 to 100; beyond it counts as the nearer end
/// \return a new image, owned by the caller; null for an unknown direction, pictures that don't match, or
///         when memory runs out
DIBKIT_API BITMAPINFOHEADER* GenerateRunPushEffect(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                                   long direction, long percent);

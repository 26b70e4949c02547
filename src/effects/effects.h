#pragma once

#include "dib/dib.h"

/// \file
/// Transitions between two frames, by number. (By name, and with whole frames as result:
/// effects/catalogue.h, which is simpler to use.) For each stage there is one picture: the part of the
/// incoming frame that shows, and its place. The host composites it over the outgoing frame.
///
/// \code
/// constexpr int grow = 13, diamond = 4;
/// for (int percent = 0; percent <= 100; percent += 25) {
///   dibkit::OwnedDib piece;
///   RECT place{};
///   if (GeneralEffectFrame(grow, incoming.get(), diamond, percent, out(piece), &place) == 0) return 1;
///   const dibkit::OwnedDib frame(CBitmapCreator::Clone(outgoing.get()));
///   CDIB32::CombineBlock(frame.get(), {0, 0}, piece.get(), {place.left, place.top}, 0);
/// \endcode
///
/// Threads: calls may run at once, except those of effects 5, 6 and 14, which share the C library's
/// generator. Aliasing: the frames are only read and may be the same image. Sizes: as in dibkit.h. Cost: a
/// few passes over the frame at every stage.

/// What an effect gives for one stage.
struct EffectOutput {
  /// The piece: a new 32-bit image, alpha 0 where nothing shows. The caller owns it.
  BITMAPINFOHEADER* image = nullptr;
  /// Where the piece goes, in pixels from the top-left pixel of the frame.
  RECT rect{};
};

/// The interface of an effect as an object, for hosts that derive effects of their own: an object is made for
/// one stage, receives its two parameters, makes one piece and is deleted. The numbered effects are
/// functions.
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
  /// \return not 0 when `output` was written; this class makes nothing
  virtual BOOL GenerateFrame(EffectOutput* output);
  /// Sets style and amount, in this order; an effect without styles takes the amount first and ignores the
  /// second. This class ignores both.
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
/// and the clock hands take any angle. Effects 5 and 6 show the whole picture above 100 percent, also where
/// their cells do not cover it.
///
/// Effects 5, 6 and 14 draw from the C library's generator, which they seed from the picture's size: equal
/// arguments give equal pieces, and a larger amount shows all that a smaller one does. Two of them must not
/// run at the same time.
///
/// There are two exceptions: the rectangle of 1 may extend beyond the frame, although the piece does not, and
/// 16 returns 1 even when memory ran out and the piece is null.
///
/// Film (8): the piece has the picture's size. n is the number of lines (rows or columns), front =
/// floor(n x percent / 100). Lines before the front are the picture's; all others repeat the picture's line
/// `front`. There is no piece at 0 percent.
///
/// Carpet (17): n is the number of lines parallel to the roll, counted from the side that it starts at. The
/// piece has flat = floor(n x percent / 100) lines as in the picture, followed by
/// roll = ceil(n x (100 - percent) / 1000) lines of the roll. With v = (2 k + 1 - roll) / roll, line k of the
/// roll is the picture's line min(n - 1, floor(flat + roll / 2 x (1 + pi - asin(v)))), each colour c darkened
/// to floor(c x light / 255) with light = 64 + floor(191 x sqrt(1 - v x v)). Alpha is the source's.
///
/// \param effect number of the effect
/// \param source the incoming frame, 32 bits; only read
/// \param a,b style and amount, as the table says
/// \param outImage receives the piece, owned by the caller
/// \param outRect receives the piece's rectangle in the frame
/// \return 1; or 0 with neither pointer written for an unknown effect or style, a stage that shows nothing
///         at all, an image without pixels or of another depth, or when memory runs out
DIBKIT_API int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b,
                                  BITMAPINFOHEADER** outImage, RECT* outRect);

/// Makes one whole frame of a transition through concentric diamond bands. In the first half the bands fade
/// from the outgoing picture to the incoming one, in the second half the gaps between them do.
///
/// \param incoming 32 bits; its alpha is ignored
/// \param outgoing 32 bits, with no fewer pixels than the incoming one, read as if it had the same size;
///        ignored when useColour is set
/// \param colour a COLORREF, used in place of the outgoing picture
/// \param useColour not 0 to fade from the colour
/// \param percent 0 to 100; other numbers still give a frame, with the low byte of their weight
/// \return a new opaque image of the incoming one's size, owned by the caller; null for unusable images or
///         when memory runs out
DIBKIT_API BITMAPINFOHEADER* DiamondEffectDIB(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                              unsigned long colour, int useColour, int percent);

/// Makes one whole frame of a transition in which the incoming picture pushes the outgoing one out of the
/// frame.
///
/// The incoming picture shows the same part in the same place as with effect 12. The outgoing picture moves
/// the same way, by dx = floor(width x percent / 100) where the incoming one moves sideways and by
/// dy = floor(height x percent / 100) where it moves up or down. When the incoming picture comes from a
/// corner, it leaves a gap beside it, which the outgoing picture's mirror image fills: from the left, column
/// dx - 1 is like column dx, dx - 2 like dx + 1 and so on, and the other sides likewise. So every pixel is
/// a pixel of one of the pictures, with its alpha.
///
/// \param incoming,outgoing 32 bits, of one size
/// \param direction 0 to 7, where the incoming picture comes from, numbered as for effect 12
/// \param percent 0 to 100; beyond it counts as the nearer end
/// \return a new image, owned by the caller; null for an unknown direction, pictures of different sizes, or
///         when memory runs out
DIBKIT_API BITMAPINFOHEADER* GenerateRunPushEffect(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                                   long direction, long percent);

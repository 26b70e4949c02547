#pragma once

#include "dib/dib.h"

/// \file
/// The difference between two frames: the rectangle that changed, so that an animation stores only that.
///
/// \code
/// CSpiltEmbededDIBEx splitter;
/// splitter.Reset(before, nullptr, {0, 0}, after, nullptr, {0, 0});
/// if (splitter.IsEqual() == 0)
///   splitter.SplitTransparency(out(change.image), out(change.mask), &change.position, nullptr);
/// \endcode
///
/// Threads: const operations of one object may run at once, and those of different objects. Aliasing: both
/// frames may be the same image; they are only read. Sizes: as in dibkit.h. Cost: Reset reads the frames from
/// the edges up to what changed, a split operation the changed rectangle.

/// Finds the rectangle in which a new frame differs from a reference frame, and cuts it out. For new frames
/// of 8 bits: the piece keeps palette and indexes. Call Reset, then IsEqual, then one of the two split
/// operations, any number of times. A host may derive from it.
///
/// Frames and masks (null for an opaque frame) are not copied: they have to live through every call after
/// Reset. Returned pieces and masks belong to the caller.
///
/// Two pixels are the same if both are transparent, or both are opaque and have one colour.
class DIBKIT_API CSpiltEmbededDIB {
 public:
  CSpiltEmbededDIB();
  /// Copies share the frames.
  CSpiltEmbededDIB(const CSpiltEmbededDIB& other);
  CSpiltEmbededDIB& operator=(const CSpiltEmbededDIB& other);
  /// Releases nothing. Not virtual, on purpose: the table of virtual operations has one slot.
  ~CSpiltEmbededDIB();

  /// Sets the two frames and counts the rows and columns at their edges that are the same.
  /// \param refMask,newMask may be null
  /// \param ref,next canvas coordinates of the frames' top-left pixels
  void Reset(BITMAPINFOHEADER* refDib, BITMAPINFOHEADER* refMask, const POINT& ref, BITMAPINFOHEADER* newDib,
             BITMAPINFOHEADER* newMask, const POINT& next);

  /// \return 1 if both frames end at the same corner of the canvas and have one width or one height, else 0
  int IsCanSpilt() const;
  /// \return 1 if nothing changed: the same columns at the left or the same rows at the top are the whole new
  ///     frame; else 0
  int IsEqual() const;

  /// Cuts the changed rectangle.
  /// \param outImage receives the piece
  /// \param outMask receives the piece's mask, or null if it is opaque
  /// \param outPosition receives the canvas coordinates of the piece's top-left pixel
  /// \param outSameFound set to 1 if a pixel of the piece has the reference frame's colour, else unchanged,
  ///     so set it to 0 first; may be null
  /// \return 1; 0 with nothing written if a pixel turned from opaque to transparent, which no piece over the
  ///     reference frame can show, if the piece has no width or height, if the frame does not have the
  ///     splitter's depth, or when memory runs out
  int SplitOpacity(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                   int* outSameFound) const;
  /// The same, with the pixels that have the reference frame's colour made transparent.
  /// \param ignored not used; the two operations have the same parameters
  int SplitTransparency(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                        int* ignored) const;

 protected:
  /// Counts the same columns and rows at the left and top edges: rows first, then columns over the other
  /// rows. Rows are counted only for frames of one position and width, columns for one position and height.
  /// \return 1 if there are any; 0 if not, or if a point of the reference frame is outside the new one, which
  ///     ends the count
  int CalcBoundaryTopLeftInfo(int* left, int* top) const;
  /// Counts the same columns and rows at the right and bottom edges, in the rest that left and top leave:
  /// columns first. Columns are counted only for frames of one right edge, top and height, rows for one
  /// position and width.
  /// \return as for CalcBoundaryTopLeftInfo
  int CalcBoundaryBottomRightInfo(int left, int top, int* right, int* bottom);

 public:
  /// Cuts the piece, as the split operations describe.
  /// \param makeSameTransparent not 0 to make the pixels with the reference frame's colour transparent
  virtual int CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                             int makeSameTransparent, int* outSameFound) const;

  /// \name State, in this order in memory
  /// @{
  BITMAPINFOHEADER* m_pRefDIB = nullptr;
  BITMAPINFOHEADER* m_pRefMask = nullptr;
  BITMAPINFOHEADER* m_pNewDIB = nullptr;
  BITMAPINFOHEADER* m_pNewMask = nullptr;
  POINT m_ptRef = {0, 0};
  POINT m_ptNew = {0, 0};
  int m_nLeftSame = 0;
  int m_nTopSame = 0;
  int m_nRightSame = 0;
  int m_nBottomSame = 0;
  /// @}
};

/// The splitter for frames of any depth. The piece becomes a palette image if it has at most 256 colours,
/// else a 24-bit one. Transparent pixels are not in the palette.
class DIBKIT_API CSpiltEmbededDIBEx : public CSpiltEmbededDIB {
 public:
  int CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                     int makeSameTransparent, int* outSameFound) const override;
};

#pragma once

#include "dib/dib.h"

/// Cuts out of a new frame the rectangle in which it differs from a reference frame, so that an animation
/// stores only what changed. For 8-bit frames: the piece has the new frame's palette and indexes. The calls
/// are Reset, IsEqual, then one of the two split operations, any number of times. A host may derive from it.
///
/// The frames and masks (null for a wholly opaque frame) are borrowed: they have to outlive all calls after
/// Reset. The caller owns the pieces and masks and releases them with
/// `delete[] reinterpret_cast<BYTE*>(image)`.
///
/// Two pixels are the same when both are transparent, or both opaque and of one colour.
class DIBKIT_API CSpiltEmbededDIB {
 public:
  CSpiltEmbededDIB();
  /// Copies share the frames.
  CSpiltEmbededDIB(const CSpiltEmbededDIB& other);
  CSpiltEmbededDIB& operator=(const CSpiltEmbededDIB& other);
  /// Releases nothing. Not virtual, on purpose: hosts expect a single slot in the table of virtual functions.
  ~CSpiltEmbededDIB();

  /// Sets the two frames and counts the equal rows and columns at their edges.
  /// \param refMask,newMask may be null
  /// \param ref,next canvas coordinates of the frames' top-left pixels
  void Reset(BITMAPINFOHEADER* refDib, BITMAPINFOHEADER* refMask, const POINT& ref, BITMAPINFOHEADER* newDib,
             BITMAPINFOHEADER* newMask, const POINT& next);

  /// \return 1 when both frames end at the same corner of the canvas and have one width or one height, else 0
  int IsCanSpilt() const;
  /// \return 1 when the equal columns at the left or the equal rows at the top are the whole new frame, so
  /// that
  ///     there is no piece to cut; else 0
  int IsEqual() const;

  /// Cuts the changed rectangle.
  /// \param outMask receives the piece's mask, or null when it is wholly opaque
  /// \param outPosition receives the canvas coordinates of the piece's top-left pixel
  /// \param outSameFound set to 1 when a pixel of the piece has the reference frame's colour, else left
  ///     alone: the caller clears it first; may be null
  /// \return 1; 0 with nothing written when a pixel turned from opaque to transparent, which no piece over
  /// the
  ///     reference frame can show, when the piece has no width or height, when the frame is not of the
  ///     splitter's depth, or when memory runs out
  int SplitOpacity(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                   int* outSameFound) const;
  /// The same with the pixels that have the reference frame's colour made transparent.
  /// \param ignored never written; it gives both operations the same parameters
  int SplitTransparency(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                        int* ignored) const;

 protected:
  /// Counts the equal rows at the top, then the equal columns at the left, compared in the other rows. Rows
  /// are counted only for frames of one position and width, columns for one position and height. \return 1
  /// when there are any; 0 when not, or when a point of the reference frame is outside the new one,
  ///     which ends the count; the counts so far are written
  int CalcBoundaryTopLeftInfo(int* left, int* top) const;
  /// Counts the equal columns at the right, then the equal rows at the bottom, compared without the rows and
  /// columns already counted. Columns are counted only for frames of one right edge, top and height, rows for
  /// one position and width.
  /// \return as for CalcBoundaryTopLeftInfo
  int CalcBoundaryBottomRightInfo(int left, int top, int* right, int* bottom);

 public:
  /// Cuts the piece; see the split operations.
  /// \param makeSameTransparent not 0 to make the pixels with the reference frame's colour transparent
  virtual int CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                             int makeSameTransparent, int* outSameFound) const;

  /// \name State; hosts rely on this order in memory
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

/// The splitter for frames of any depth: the piece is made in 24 bits and reduced to a palette image when it
/// has at most 256 colours. Pixels made transparent take no part in the palette.
class DIBKIT_API CSpiltEmbededDIBEx : public CSpiltEmbededDIB {
 public:
  int CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition,
                     int makeSameTransparent, int* outSameFound) const override;
};

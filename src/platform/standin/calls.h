#pragma once

#include "platform/export.h"
#include "platform/standin/types.h"

/// \file
/// The Win32 calls that the library and its hosts use, for platforms without Win32. Names, arguments and
/// observable results are those of Windows. Calls on different objects may run at the same time; an object
/// that one call changes must not be used by another. The clipboard is locked, so every call on it is safe.

extern "C" {

/// \name Rectangles
/// @{
DIBKIT_API BOOL SetRect(RECT* rect, int left, int top, int right, int bottom);
DIBKIT_API BOOL SetRectEmpty(RECT* rect);
DIBKIT_API BOOL IntersectRect(RECT* out, const RECT* a, const RECT* b);
DIBKIT_API BOOL UnionRect(RECT* out, const RECT* a, const RECT* b);
DIBKIT_API BOOL IsRectEmpty(const RECT* rect);
DIBKIT_API BOOL OffsetRect(RECT* rect, int dx, int dy);
DIBKIT_API BOOL InflateRect(RECT* rect, int dx, int dy);
DIBKIT_API BOOL EqualRect(const RECT* a, const RECT* b);
DIBKIT_API BOOL PtInRect(const RECT* rect, POINT point);
/// @}

/// \name Regions
/// Every region made here is released with DeleteObject.
/// @{
DIBKIT_API HRGN CreateRectRgn(int left, int top, int right, int bottom);
DIBKIT_API HRGN CreatePolygonRgn(const POINT* points, int count, int mode);
DIBKIT_API HRGN CreateEllipticRgn(int left, int top, int right, int bottom);
DIBKIT_API HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int ellipseWidth,
                                   int ellipseHeight);
DIBKIT_API HRGN ExtCreateRegion(const XFORM* transform, DWORD byteCount, const RGNDATA* data);
DIBKIT_API int CombineRgn(HRGN destination, HRGN a, HRGN b, int mode);
DIBKIT_API int OffsetRgn(HRGN region, int dx, int dy);
DIBKIT_API int GetRgnBox(HRGN region, RECT* out);
DIBKIT_API BOOL PtInRegion(HRGN region, int x, int y);
DIBKIT_API BOOL EqualRgn(HRGN a, HRGN b);
DIBKIT_API DWORD GetRegionData(HRGN region, DWORD byteCount, RGNDATA* data);
/// @}

/// \name Bitmaps
/// The bitmaps made here are released with DeleteObject. Sizes of 0 or less, unknown depths and pictures of
/// more than 2 GiB give null.
/// @{
DIBKIT_API HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitCount, const void* bits);
/// Monochrome for a fresh memory context, 32 bits for the screen's.
DIBKIT_API HBITMAP CreateCompatibleBitmap(HDC context, int width, int height);
DIBKIT_API HBITMAP CreateDIBSection(HDC context, const BITMAPINFO* info, UINT usage, void** bits, HANDLE file,
                                    DWORD offset);
/// The rows and colours of a bitmap. Without `bits` only header and colour table are filled in.
/// \return the number of rows; 1 without `bits`; 0 for failure
DIBKIT_API int GetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, void* bits, BITMAPINFO* info,
                         UINT usage);
DIBKIT_API int SetDIBitsToDevice(HDC context, int x, int y, DWORD width, DWORD height, int fromX, int fromY,
                                 UINT start, UINT lines, const void* bits, const BITMAPINFO* info,
                                 UINT usage);
/// Copies pixels, matching colours where the depths differ. SRCCOPY is the only operation here.
DIBKIT_API BOOL BitBlt(HDC context, int x, int y, int width, int height, HDC source, int fromX, int fromY,
                       DWORD operation);
/// @}

/// \name Device contexts
/// @{
DIBKIT_API HDC CreateCompatibleDC(HDC reference);
DIBKIT_API BOOL DeleteDC(HDC context);
/// The screen's context, for a null window only: nothing can be drawn on it.
DIBKIT_API HDC GetDC(HWND window);
DIBKIT_API int ReleaseDC(HWND window, HDC context);
/// \return the object that was selected before, null when this one cannot be selected; for a region its
///     complexity instead of a handle
DIBKIT_API HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
DIBKIT_API int SelectClipRgn(HDC context, HRGN region);
DIBKIT_API BOOL SetViewportOrgEx(HDC context, int x, int y, POINT* before);
DIBKIT_API COLORREF GetPixel(HDC context, int x, int y);
DIBKIT_API COLORREF SetPixel(HDC context, int x, int y, COLORREF colour);
DIBKIT_API BOOL GdiFlush();
/// @}

/// \name Pens and brushes
/// @{
DIBKIT_API HGDIOBJ GetStockObject(int number);
/// PS_SOLID and PS_NULL.
DIBKIT_API HPEN CreatePen(int style, int width, COLORREF colour);
/// PS_GEOMETRIC, solid, with round joins and round or square caps.
DIBKIT_API HPEN ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD styleCount,
                             const DWORD* lengths);
DIBKIT_API HBRUSH CreateSolidBrush(COLORREF colour);
/// @}

/// \name Drawing
/// Clipped by the selected region, which does not follow the viewport origin.
/// @{
DIBKIT_API int FillRect(HDC context, const RECT* rect, HBRUSH brush);
DIBKIT_API BOOL MoveToEx(HDC context, int x, int y, POINT* before);
DIBKIT_API BOOL LineTo(HDC context, int x, int y);
DIBKIT_API BOOL Polygon(HDC context, const POINT* points, int count);
DIBKIT_API BOOL Ellipse(HDC context, int left, int top, int right, int bottom);
DIBKIT_API BOOL RoundRect(HDC context, int left, int top, int right, int bottom, int ellipseWidth,
                          int ellipseHeight);
/// @}

/// \name Palettes
/// Logical palettes are made here and released with DeleteObject. None is ever realised, since the screen
/// shows true colours. Colour tables are those of the DIB section that a context has selected.
/// @{
DIBKIT_API HPALETTE CreatePalette(const LOGPALETTE* description);
/// Copies up to `count` entries from `first` on.
/// \return how many were copied; how many entries there are if `out` is null
DIBKIT_API UINT GetPaletteEntries(HPALETTE palette, UINT first, UINT count, PALETTEENTRY* out);
/// \return the palette that was selected before
DIBKIT_API HPALETTE SelectPalette(HDC context, HPALETTE palette, BOOL background);
/// \return how many entries changed on the screen
DIBKIT_API UINT RealizePalette(HDC context);
/// \return how many entries were written or read
DIBKIT_API UINT SetDIBColorTable(HDC context, UINT first, UINT count, const RGBQUAD* colours);
DIBKIT_API UINT GetDIBColorTable(HDC context, UINT first, UINT count, RGBQUAD* colours);
/// @}

/// \name Global memory
/// A handle is the address of its block. GlobalFree gives null when it has released the block.
/// @{
DIBKIT_API HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);
DIBKIT_API void* GlobalLock(HGLOBAL block);
DIBKIT_API BOOL GlobalUnlock(HGLOBAL block);
DIBKIT_API SIZE_T GlobalSize(HGLOBAL block);
DIBKIT_API HGLOBAL GlobalFree(HGLOBAL block);
/// @}

/// \name Clipboard
/// One for the process. It owns what was put on it, and releases palettes and bitmaps with DeleteObject,
/// everything else with GlobalFree. What GetClipboardData returns belongs to the clipboard.
/// @{
DIBKIT_API BOOL OpenClipboard(HWND owner);
DIBKIT_API BOOL CloseClipboard(void);
DIBKIT_API BOOL EmptyClipboard(void);
DIBKIT_API HANDLE SetClipboardData(UINT format, HANDLE data);
DIBKIT_API HANDLE GetClipboardData(UINT format);
DIBKIT_API UINT EnumClipboardFormats(UINT format);
DIBKIT_API BOOL IsClipboardFormatAvailable(UINT format);
/// @}

/// Describes a bitmap (a BITMAP), a palette (a WORD, the number of its entries) or another graphics object.

/// \return the size of the description; 0 for failure
DIBKIT_API int GetObjectW(HANDLE object, int byteCount, void* out);
/// Releases a region or any other graphics object. One that is selected is released when it is deselected.
DIBKIT_API BOOL DeleteObject(HGDIOBJ object);
}

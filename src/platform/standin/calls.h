#pragma once

#include "platform/export.h"
#include "platform/standin/types.h"

/// The Win32 calls that the library and its hosts use, for grounds that have none of their own. Names,
/// arguments and observable results are the platform's.

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

/// Releases a region or any other graphics object.
DIBKIT_API BOOL DeleteObject(HGDIOBJ object);
}

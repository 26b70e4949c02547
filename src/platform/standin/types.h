#pragma once

#include <cstddef>
#include <cstdint>

/// \file
/// The Win32 types, structures and constants, for platforms without Win32. Sizes and layouts are those of
/// Windows: a LONG has 32 bits, also where the compiler's long has 64.

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using COLORREF = std::uint32_t;
using LONG = std::int32_t;
using UINT = unsigned int;
using BOOL = int;
using SIZE_T = std::size_t;
using WCHAR = char16_t;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

using HANDLE = void*;
using HGDIOBJ = void*;
using HGLOBAL = void*;
using HRGN = struct HRGN__*;
using HDC = struct HDC__*;
using HBITMAP = struct HBITMAP__*;
using HPALETTE = struct HPALETTE__*;
using HPEN = struct HPEN__*;
using HBRUSH = struct HBRUSH__*;
using HWND = struct HWND__*;

struct POINT {
  LONG x;
  LONG y;
};

struct SIZE {
  LONG cx;
  LONG cy;
};

struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

using LPPOINT = POINT*;
using LPSIZE = SIZE*;
using LPRECT = RECT*;

struct RGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};

struct BITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};

struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
};

struct BITMAP {
  LONG bmType;
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  void* bmBits;
};

struct RGNDATAHEADER {
  DWORD dwSize;
  DWORD iType;
  DWORD nCount;
  DWORD nRgnSize;
  RECT rcBound;
};

struct RGNDATA {
  RGNDATAHEADER rdh;
  char Buffer[1];
};

struct XFORM {
  float eM11;
  float eM12;
  float eM21;
  float eM22;
  float eDx;
  float eDy;
};

struct PALETTEENTRY {
  BYTE peRed;
  BYTE peGreen;
  BYTE peBlue;
  BYTE peFlags;
};

struct LOGPALETTE {
  WORD palVersion;
  WORD palNumEntries;
  PALETTEENTRY palPalEntry[1];
};

struct LOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  std::uintptr_t lbHatch;
};

static_assert(sizeof(POINT) == 8 && sizeof(SIZE) == 8 && sizeof(RECT) == 16);
static_assert(sizeof(RGBQUAD) == 4 && sizeof(PALETTEENTRY) == 4);
static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(BITMAPINFO) == 44);
static_assert(sizeof(RGNDATAHEADER) == 32 && offsetof(RGNDATA, Buffer) == 32);
static_assert(sizeof(LOGPALETTE) == 8 && sizeof(XFORM) == 24);

constexpr DWORD BI_RGB = 0;
constexpr DWORD BI_BITFIELDS = 3;

constexpr int ERROR = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;

constexpr int RGN_AND = 1;
constexpr int RGN_OR = 2;
constexpr int RGN_XOR = 3;
constexpr int RGN_DIFF = 4;
constexpr int RGN_COPY = 5;

constexpr int ALTERNATE = 1;
constexpr int WINDING = 2;

constexpr DWORD RDH_RECTANGLES = 1;

constexpr UINT DIB_RGB_COLORS = 0;
constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int DEFAULT_PALETTE = 15;

constexpr UINT BS_SOLID = 0;
constexpr int PS_SOLID = 0;
constexpr int PS_NULL = 5;
constexpr int PS_ENDCAP_ROUND = 0;
constexpr int PS_ENDCAP_SQUARE = 0x100;
constexpr int PS_JOIN_ROUND = 0;
constexpr int PS_GEOMETRIC = 0x10000;

constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;

constexpr UINT CF_BITMAP = 2;
constexpr UINT CF_DIB = 8;
constexpr UINT CF_PALETTE = 9;
constexpr UINT CF_DIBV5 = 17;

constexpr COLORREF RGB(int red, int green, int blue) {
  return static_cast<COLORREF>((red & 255) | (green & 255) << 8 | (blue & 255) << 16);
}

#include "effects/catalogue.h"
#include "effects/effects.h"
#include "ripple/ripple.h"
#include "unmatched.h"

/// A piece of every transition, near its costliest stage, and frames of those that make whole ones.
namespace bench {
namespace {

template <int effect, long a, long b>
Dib piece(const Scene& s) {
  OwnedDib image;
  RECT place{};
  GeneralEffectFrame(effect, s.a.get(), a, b, dibkit::out(image), &place);
  return image.release();
}

Dib wholeFrame(const char* name, const Scene& s) {
  return dibkit::findEffect(name)->frame(s.a.get(), s.b.get(), 0, 0.4).release();
}

constexpr Unmatched rowsOfEffects[] = {
    {"clock, 200 degrees", "photo", photo, piece<1, 1, 200>, 8},
    {"ten by ten clocks, 200 degrees", "photo", photo, piece<2, 1, 200>, 8},
    {"star, 60 %", "photo", photo, piece<3, 60, 0>, 8},
    {"spiral, 720 degrees", "photo", photo, piece<4, 1, 720>, 8},
    {"random cells, 50 %", "photo", photo, piece<5, 50, 0>, 8},
    {"sweeping cells, 50 %", "photo", photo, piece<6, 0, 50>, 8},
    {"turn, horizontal, 30 degrees", "photo", photo, piece<7, 0, 30>, 8},
    {"turn, vertical, 30 degrees", "photo", photo, piece<7, 1, 30>, 8},
    {"film, rows, 50 %", "photo", photo, piece<8, 0, 50>, 8},
    {"film, columns, 50 %", "photo", photo, piece<8, 1, 50>, 8},
    {"four-pointed star", "photo", photo, piece<9, 300, 0>, 8},
    {"halves, 50 %", "photo", photo, piece<10, 0, 50>, 8},
    {"bars, horizontal, 50 %", "photo", photo, piece<11, 0, 50>, 8},
    {"bars, vertical, 50 %", "photo", photo, piece<11, 1, 50>, 8},
    {"circle, 70 %", "photo", photo, piece<13, 0, 70>, 8},
    {"diamond, 70 %", "photo", photo, piece<13, 4, 70>, 8},
    {"strips, columns, 50 %", "photo", photo, piece<14, 0, 50>, 8},
    {"strips, rows, 50 %", "photo", photo, piece<14, 1, 50>, 8},
    {"blinds, vertical, 50 %", "photo", photo, piece<15, 0, 50>, 8},
    {"blinds, horizontal, 50 %", "photo", photo, piece<15, 1, 50>, 8},
    {"thaw, 50 %", "photo", photo, piece<16, 50, 0>, 8},
    {"carpet, from the left, 50 %", "photo", photo, piece<17, 0, 50>, 8},
    {"carpet, from the top, 50 %", "photo", photo, piece<17, 1, 50>, 8},
    {"fade under water, whole frame", "photo", photo, [](const Scene& s) { return wholeFrame("ripple", s); },
     12},
    {"push, whole frame", "photo", photo, [](const Scene& s) { return wholeFrame("push", s); }, 8},
};

}  // namespace

void addUnmatchedEffects(Rows& rows) {
  for (const Unmatched& row : rowsOfEffects) add(rows, row);
}

}  // namespace bench

#pragma once

#include <span>
#include <string_view>

#include "dib/dib.h"

/// \file
/// The transitions that a host can offer to a person, as a table. One loop makes them all:
///
///     if (effect.isWholeFrame()) {
///       frame = effect.compose(incoming, outgoing, style, progress);
///     } else {
///       const auto [a, b] = effect.parameters(progress, size, style);
///       if (GeneralEffectFrame(effect.number, incoming, a, b, &piece, &rect) == 1) {
///         // Lay the piece over a copy of the outgoing frame at pieceOrigin(rect).
///       }
///     }
namespace dibkit {

/// What an amount counts.
enum class AmountUnit { percent, degrees, pixels };

/// A way in which an effect may run. Its value is its place in the effect's list.
struct EffectStyle {
  const char* name;   ///< for command lines: lower case, words joined by hyphens
  const char* title;  ///< for people
};

/// The parameters of GeneralEffectFrame for one stage: style and amount of an effect with styles, the amount
/// and 0 of any other.
struct EffectParameters {
  long a = 0;
  long b = 0;
};

/// Where the top left pixel of a piece goes. It is the corner of the piece's place, but for the clock's:
/// where that reaches out of the frame, the piece starts at the frame's edge.
inline POINT pieceOrigin(const RECT& place) {
  return {place.left > 0 ? place.left : 0, place.top > 0 ? place.top : 0};
}

/// A transition.
struct DIBKIT_API Effect {
  /// The number that GeneralEffectFrame knows it by; -1 for a transition of whole frames.
  int number;
  const char* name;                     ///< for command lines: lower case, words joined by hyphens
  const char* title;                    ///< for people
  const char* family;                   ///< heading under which similar ones stand
  std::span<const EffectStyle> styles;  ///< empty for an effect without styles, whose style is then 0
  int defaultStyle;
  AmountUnit unit;
  /// It draws from the C library's generator: a host must not make two such frames at the same time.
  bool drawsRandomNumbers;

  /// The amount that has been reached.
  /// \param progress 0.0 to 1.0
  /// \param picture size of the frame, at least 1 x 1
  /// \param style place in `styles`
  long (*amount)(double progress, const SIZE& picture, int style);

  /// Makes a whole frame; null for effects that make a piece.
  /// \param incoming,outgoing 32 bits, of one size; only read
  /// \param progress 0.0 for the outgoing picture to 1.0 for the incoming one
  /// \return the frame; null for unusable pictures or when memory runs out
  OwnedDib (*compose)(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress);

  bool isWholeFrame() const { return compose != nullptr; }

  /// The parameters for GeneralEffectFrame at a stage: nothing or the least shows at progress 0, the whole
  /// incoming picture at 1. Progress outside 0 to 1 counts as the nearer end.
  EffectParameters parameters(double progress, const SIZE& picture, int style) const;
};

/// All transitions, those of one family side by side. Lives as long as the library.
DIBKIT_API std::span<const Effect> effects();

/// The transition with a command-line name, or null.
DIBKIT_API const Effect* findEffect(std::string_view name);

/// The style of an effect with a command-line name, or -1.
DIBKIT_API int findStyle(const Effect& effect, std::string_view name);

}  // namespace dibkit

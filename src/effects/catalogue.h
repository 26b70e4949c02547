#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "dib/dib.h"

/// \file
/// Transitions by name, as a table that a host can offer in a menu: cross-fade ("fade"), dissolve ("mosaic":
/// cells in random order), slides, turns, shapes, clocks. One call makes a frame:
///
/// \code
/// const dibkit::Effect* effect = dibkit::findEffect(name);
/// for (int i = 1; effect != nullptr && i <= count; ++i) {
///   frames.push_back(effect->frame(incoming, outgoing, effect->defaultStyle, 1.0 * i / count));
/// }
/// \endcode
///
/// A host that composites on its own gets the piece of a numbered effect from GeneralEffectFrame (effects.h),
/// with the numbers that `parameters` gives. The piece replaces what is at pieceOrigin(rect) in the outgoing
/// frame.
///
/// Threads: frames may be made at once, except those of effects that draw random numbers. Aliasing: incoming
/// and outgoing are only read and may be the same image. Sizes: as in dibkit.h. Cost: a few passes over the
/// picture, for "ripple" up to 64 more.

namespace dibkit {

/// What an amount counts.
enum class AmountUnit { percent, degrees, pixels };

/// A way in which an effect may run. Its number is its index in the effect's list.
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

/// Where the top left pixel of a piece goes: the top left corner of its rectangle, but no further left or up
/// than the frame's edge. Only the clock's rectangle extends beyond the frame; its piece starts at the edge.
inline POINT pieceOrigin(const RECT& place) {
  return {place.left > 0 ? place.left : 0, place.top > 0 ? place.top : 0};
}

/// A transition.
struct DIBKIT_API Effect {
  /// The number for GeneralEffectFrame; none for a transition of whole frames.
  std::optional<int> number{};
  const char* name = nullptr;             ///< for command lines: lower case, words joined by hyphens
  const char* title = nullptr;            ///< for people
  const char* family = nullptr;           ///< heading for a group of similar effects
  std::span<const EffectStyle> styles{};  ///< empty for an effect without styles, whose style is then 0
  int defaultStyle = 0;
  AmountUnit unit = AmountUnit::percent;
  /// It draws from the C library's generator: a host must not make two such frames at the same time.
  bool drawsRandomNumbers = false;

  /// The amount at a stage.
  /// \param progress 0.0 to 1.0
  /// \param picture size of the frame, at least 1 x 1
  /// \param style index in `styles`
  long (*amount)(double progress, const SIZE& picture, int style) = nullptr;

  /// `frame` takes progress beyond the ends, down to -1.0 and up to 2.0: the picture moves past its end
  /// position and can come back.
  bool overshoots = false;

  /// Makes the stages between the ends; null where they are the outgoing picture with the piece in it.
  OwnedDib (*compose)(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style,
                      double progress) = nullptr;

  /// Whether it has no number.
  constexpr bool isWholeFrame() const { return !number.has_value(); }

  /// Makes the frame of a stage. Where the incoming picture shows, the outgoing one does not: not through its
  /// transparent pixels either.
  /// \param incoming,outgoing 32 bits, of one size; only read
  /// \param progress 0.0 for the outgoing picture to 1.0 for the incoming one, both exact to the byte. Beyond
  ///        them it counts as the nearer end, except for an effect that overshoots: the picture of that end
  ///        moves on by the excess as a share of its size, followed by its mirror image.
  /// \param changed receives the rectangle outside of which the frame equals the outgoing picture, empty for
  ///        none; may be null, and stays as it is when the frame is null
  /// \return the frame; null for unusable pictures, an unknown style, or when memory runs out
  OwnedDib frame(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress,
                 RECT* changed = nullptr) const;

  /// The parameters for GeneralEffectFrame at a stage: nothing or as little as possible shows at progress 0,
  /// the whole incoming picture at 1. Progress outside 0 to 1 counts as the nearer end.
  EffectParameters parameters(double progress, const SIZE& picture, int style) const;
};

/// All transitions, grouped by family. Valid as long as the library is loaded.
DIBKIT_API std::span<const Effect> effects();

/// The transition with a command-line name, or null.
DIBKIT_API const Effect* findEffect(std::string_view name);

/// The style of an effect with a command-line name, or -1.
DIBKIT_API int findStyle(const Effect& effect, std::string_view name);

}  // namespace dibkit

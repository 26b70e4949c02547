#include "effects/catalogue.h"

#include <algorithm>

#include "dib/view.h"
#include "effects/composition.h"
#include "effects/piece.h"

namespace dibkit {

EffectParameters Effect::parameters(double progress, const SIZE& picture, int style) const {
  // Not std::clamp: a progress that is not a number has to count as 0.
  const double reached = progress > 0.0 ? std::min(progress, 1.0) : 0.0;
  const SIZE size{std::max<LONG>(picture.cx, 1), std::max<LONG>(picture.cy, 1)};
  const long a = amount(reached, size, style);
  return styles.empty() ? EffectParameters{a, 0} : EffectParameters{style, a};
}

OwnedDib Effect::frame(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress,
                       RECT* changed) const {
  const View in = viewOfDepth(incoming, 32);
  const View out = viewOfDepth(outgoing, 32);
  if (!in || !out || in.width() != out.width() || in.height() != out.height()) return nullptr;
  if (in.width() == 0 || in.height() == 0) return nullptr;
  const int count = std::max(1, static_cast<int>(styles.size()));
  if (style < 0 || style >= count) return nullptr;

  RECT part{0, 0, in.width(), in.height()};
  OwnedDib made;
  if (overshoots && (progress < 0.0 || progress > 1.0)) {
    // Four sides are every other one of the eight directions.
    const long direction = 8 / count * style;
    made = progress > 1.0 ? moveOn(incoming, direction, std::min(progress, 2.0) - 1.0)
                          : moveOn(outgoing, direction, std::max(progress, -1.0));
  } else if (!(progress > 0.0)) {
    part = {};
    made = copyOf(outgoing);
  } else if (progress >= 1.0) {
    made = copyOf(incoming);
  } else if (compose != nullptr) {
    made = compose(incoming, outgoing, style, progress);
  } else {
    made = composePiece(*number, incoming, outgoing, parameters(progress, sizeOf(incoming), style), part);
  }
  if (made && changed != nullptr) *changed = part;
  return made;
}

const Effect* findEffect(std::string_view name) {
  const std::span<const Effect> all = effects();
  const auto found =
      std::ranges::find(all, name, [](const Effect& effect) { return std::string_view(effect.name); });
  return found != all.end() ? &*found : nullptr;
}

int findStyle(const Effect& effect, std::string_view name) {
  const auto found = std::ranges::find(effect.styles, name,
                                       [](const EffectStyle& style) { return std::string_view(style.name); });
  return found != effect.styles.end() ? static_cast<int>(found - effect.styles.begin()) : -1;
}

}  // namespace dibkit

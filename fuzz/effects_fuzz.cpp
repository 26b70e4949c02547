#include "effects/catalogue.h"
#include "effects/effects.h"
#include "ripple/ripple.h"
#include "support.h"

/// Transitions and water with the fuzzer's pictures and amounts.
namespace {

using dibkit::OwnedDib;

/// Reads every byte of a result, so that the sanitizer sees a block shorter than its header.
void use(const OwnedDib& dib) {
  if (!dib) return;
  const auto* bytes = reinterpret_cast<const volatile BYTE*>(dib.get());
  const std::int64_t total = dibkit::layoutOf(dib.get())->total;
  for (std::int64_t i = 0; i < total; ++i) static_cast<void>(bytes[i]);
}

void piece(fuzz::Input& input) {
  const int effect = input.byte() % 20 - 1;
  const long a = input.number();
  const long b = input.number();
  fuzz::Image source(input, 32);
  BITMAPINFOHEADER* image = nullptr;
  RECT rect{};
  if (GeneralEffectFrame(effect, source.get(), a, b, &image, &rect) == 1) use(OwnedDib(image));
}

void wholeFrame(fuzz::Input& input) {
  const int kind = input.byte() % 3;
  const int style = input.number();
  const int amount = input.number();
  fuzz::Image incoming(input, 32);
  fuzz::Image outgoing(input, 32);
  if (kind == 0) {
    use(OwnedDib(
        DiamondEffectDIB(incoming.get(), outgoing.get(), static_cast<DWORD>(style), style & 1, amount)));
  } else if (kind == 1) {
    use(OwnedDib(GenerateRunPushEffect(incoming.get(), outgoing.get(), style, amount)));
  } else {
    for (const dibkit::Effect& effect : dibkit::effects()) {
      use(effect.frame(incoming.get(), outgoing.get(), style % 9, amount / 100.0));
    }
  }
}

void water(fuzz::Input& input) {
  fuzz::Image first(input, 32);
  fuzz::Image second(input, 32);
  CRippleEffect ripple(first.get(), input.byte() % 4);
  use(OwnedDib(ripple.GenerateRippleEffect()));
  while (!input.empty()) {
    const int x = input.number();
    const int y = input.number();
    switch (input.byte() % 8) {
      case 0:
        ripple.StartToRipple();
        break;
      case 1:
        ripple.EndToRipple();
        break;
      case 2:
        ripple.InitializeParams(x & 1 ? first.get() : second.get());
        break;
      case 3:
        ripple.HeightBlob(x, y, input.number(), input.number(), input.byte() % 2);
        break;
      case 4:
        ripple.CalcWater(x, y);
        break;
      case 5:
        ripple.CalcWaterBigFilter(x, y);
        break;
      case 6:
        use(OwnedDib(ripple.GenerateRippleEffect(x, y)));
        break;
      default:
        use(OwnedDib(ripple.NextToRipple()));
        break;
    }
  }
  ripple.EndToRipple();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  switch (input.byte() % 3) {
    case 0:
      piece(input);
      break;
    case 1:
      wholeFrame(input);
      break;
    default:
      water(input);
      break;
  }
  return 0;
}

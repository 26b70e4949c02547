#include "unmatched.h"

#include <cstring>
#include <vector>

namespace bench {

void add(Rows& rows, const Unmatched& row) {
  const auto make = [&row](Size size) {
    const auto [w, h] = size;
    const std::shared_ptr<dibkit::OwnedRegion> ellipse(
        new dibkit::OwnedRegion(CreateEllipticRgn(0, 0, w, h)));
    const auto second = row.second != nullptr ? row.second : row.make;
    const Scene scene{row.make(w, h), second(w, h), cartoonMask(w, h), brush8(w, h), ellipse};
    const std::vector<BYTE> from(static_cast<std::size_t>(size.pixels() * row.copiedBytes / 2), 1);
    const auto to = std::make_shared<std::vector<BYTE>>(from.size());
    Trial trial;
    trial.ours = [&row, scene] { return OwnedDib(row.run(scene)); };
    trial.peer = [from, to] {
      std::memcpy(to->data(), from.data(), from.size());
      asm volatile("" : : "r"(to->data()) : "memory");
    };
    if (row.restoresFirst) {
      trial.resetOurs = [scene] {
        std::memcpy(scene.a.get(), scene.b.get(),
                    static_cast<std::size_t>(dibkit::layoutOf(scene.b.get())->total));
      };
    }
    trial.pixels = size.pixels();
    trial.verify = [] { return ""; };
    return trial;
  };
  rows.push_back({row.name, row.picture, "memcpy", "", make, "pixel", row.copiedBytes});
}

}  // namespace bench

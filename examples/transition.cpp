// Five stages of a transition: the incoming picture grows over the outgoing one as a diamond.
#include <cstdio>

#include <dibkit.h>

int main() {
  const dibkit::OwnedDib outgoing(CDIB32::CreateSimple32BitsDIB(320, 200, RGB(20, 40, 90), 255));
  const dibkit::OwnedDib incoming(CDIB32::CreateSimple32BitsDIB(320, 200, RGB(250, 180, 40), 255));
  if (!outgoing || !incoming) return 1;

  constexpr int grow = 13, diamond = 4;
  for (int percent = 0; percent <= 100; percent += 25) {
    dibkit::OwnedDib piece;
    RECT place{};
    if (GeneralEffectFrame(grow, incoming.get(), diamond, percent, out(piece), &place) == 0) return 1;
    const dibkit::OwnedDib frame(CBitmapCreator::Clone(outgoing.get()));
    CDIB32::CombineBlock(frame.get(), {0, 0}, piece.get(), {place.left, place.top}, 0);
    std::printf("%3d %%: the piece covers columns %d to %d, rows %d to %d\n", percent, int(place.left),
                int(place.right), int(place.top), int(place.bottom));
  }
}

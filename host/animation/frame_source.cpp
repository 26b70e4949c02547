#include "host/animation/frame_source.h"

#include <utility>

namespace host {

void forEachFrame(FrameSource& source, Workers& workers,
                  const std::function<void(RenderedFrame&& frame, int number, const RECT& changed)>& take) {
  const RECT whole{0, 0, source.size().width, source.size().height};
  OrderedResults<RenderedFrame> rendered(workers);
  const Picture* backdrop = nullptr;
  RECT changedBefore{};
  int taken = 0;
  const auto takeNext = [&] {
    RenderedFrame frame = rendered.next();
    // Frames with one backdrop differ only where at least one of them differs from it.
    RECT changed = whole;
    if (frame.backdrop != nullptr && frame.backdrop == backdrop)
      UnionRect(&changed, &changedBefore, &frame.changed);
    backdrop = frame.backdrop;
    changedBefore = frame.changed;
    take(std::move(frame), taken++, changed);
  };
  for (int i = 0; i < source.count(); ++i) {
    const auto render = [&source, i](int) { return source.render(i); };
    if (source.needsOrder()) {
      rendered.addSmall(render);
    } else {
      rendered.add(render);
    }
    while (rendered.full()) takeNext();
  }
  while (!rendered.empty()) takeNext();
}

}  // namespace host

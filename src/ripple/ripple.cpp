#include "ripple/ripple.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "dib/view.h"
#include "platform/guard.h"
#include "ripple/water.h"

namespace dibkit {
namespace {

constexpr int stepsPerRound = 4;

/// A random centre of a disc along one axis; below 0 when there is no room for one.
int drawPlace(int extent, int radius) {
  const std::int64_t room = std::int64_t{extent} - 2 * std::int64_t{radius} - 1;
  if (room == 0) return -1;
  return static_cast<int>(std::rand() % room + radius + 1);
}

/// Allocates a level page; null when memory runs out.
int* newPage(int width, int height) {
  return new (std::nothrow) int[static_cast<std::size_t>(width) * static_cast<std::size_t>(height)]();
}

/// Detects that the water is at rest: after a round that changes no cell there is no other change.
class RestWatch {
 public:
  explicit RestWatch(const std::array<HeightPage, 2>& pages) : pages_(pages) {}

  /// Stores the heights for a later comparison. Without memory for them the water never counts as at rest.
  void remember() {
    for (std::size_t i = 0; i < 2; ++i) {
      if (!seen_[i]) seen_[i].reset(newPage(pages_[i].width, pages_[i].height));
      if (seen_[i]) std::copy_n(pages_[i].cells, cells(), seen_[i].get());
    }
  }
  bool unchanged() const {
    return std::equal(seen_.begin(), seen_.end(), pages_.begin(),
                      [this](const auto& seen, const HeightPage& page) {
                        return seen != nullptr && std::equal(page.cells, page.cells + cells(), seen.get());
                      });
  }

 private:
  std::ptrdiff_t cells() const { return std::ptrdiff_t{pages_[0].width} * pages_[0].height; }

  std::array<HeightPage, 2> pages_;
  std::array<std::unique_ptr<int[]>, 2> seen_;
};

}  // namespace
}  // namespace dibkit

using namespace dibkit;

CRippleEffect::CRippleEffect(BITMAPINFOHEADER* source, int iterations) : m_nIterations(iterations) {
  InitializeParams(source);
}

// The height field is not released, on purpose: a copy may still use it. EndToRipple releases it.
CRippleEffect::~CRippleEffect() = default;

void CRippleEffect::InitializeParams(BITMAPINFOHEADER* source) {
  m_pSrcDib = source;
  m_nWidth = source != nullptr ? source->biWidth : 0;
  m_nHeight = source != nullptr ? source->biHeight : 0;
}

void CRippleEffect::HeightBlob(int x, int y, int radius, int height, int page) {
  if (m_pFirst == nullptr) return;
  if (x < 0) x = drawPlace(m_nFieldWidth, radius);
  if (y < 0) y = drawPlace(m_nFieldHeight, radius);
  if (x < 0 || y < 0) return;
  raiseDisc(Field(page), x, y, radius, height);
}

void CRippleEffect::CalcWater(int page, int density) { Step(stepWave, page, density); }
void CRippleEffect::CalcWaterBigFilter(int page, int density) { Step(stepBroadWave, page, density); }

HeightPage CRippleEffect::Field(int page) const {
  return {page != 0 ? m_pSecond : m_pFirst, m_nFieldWidth, m_nFieldHeight};
}

void CRippleEffect::Step(WaveStep* step, int page, int density) {
  if (m_pFirst == nullptr) return;
  step(Field(page), Field(page == 0), std::clamp(density, 0, 31));
}

void CRippleEffect::FlattenWater() {
  if (m_pFirst == nullptr) return;
  const std::size_t cells =
      static_cast<std::size_t>(m_nFieldWidth) * static_cast<std::size_t>(m_nFieldHeight);
  std::fill_n(m_pFirst, cells, 0);
  std::fill_n(m_pSecond, cells, 0);
}

BITMAPINFOHEADER* CRippleEffect::GenerateRippleEffect(int, int) {
  const BITMAPINFOHEADER* source = m_pSrcDib;
  const ConstView picture = viewOfDepth(source, 32);
  if (!picture || m_pFirst == nullptr) return nullptr;
  if (picture.width() != m_nFieldWidth || picture.height() != m_nFieldHeight) return nullptr;
  return catchOutOfMemory([&] { return refract(picture, Field(0), RefractedAlpha::full).release(); });
}

BITMAPINFOHEADER* CRippleEffect::GenerateRippleEffect() {
  CRippleEffect run(m_pSrcDib, 0);
  if (!run.AllocateField()) return nullptr;
  run.HeightBlob(run.m_nWidth / 2, run.m_nHeight / 2, 5, dropHeight, 0);
  addDrops(run.Field(0));
  // Damped water is at rest after a hundred rounds or so, so further rounds can be left out.
  constexpr int roundsBetweenChecks = 64;
  RestWatch watch({run.Field(0), run.Field(1)});
  for (int left = m_nIterations; left > 0; --left) {
    const bool check = left % roundsBetweenChecks == 0;
    if (check) watch.remember();
    run.RunRound();
    if (check && watch.unchanged()) break;
  }
  BITMAPINFOHEADER* picture = run.GenerateRippleEffect(0, 0);
  run.EndToRipple();
  return picture;
}

void CRippleEffect::GetShiftedColor(BYTE* red, BYTE* green, BYTE* blue, int shift) {
  for (BYTE* channel : {red, green, blue}) {
    if (channel == nullptr) continue;
    *channel = static_cast<BYTE>(std::clamp<std::int64_t>(std::int64_t{*channel} - shift, 0, 255));
  }
}

void CRippleEffect::StartToRipple() {
  m_nPage = 0;
  m_nIterations = 0;
  if (AllocateField()) addDrops(Field(0));
}

BITMAPINFOHEADER* CRippleEffect::NextToRipple() {
  RunRound();
  return GenerateRippleEffect(m_nPage, 0);
}

void CRippleEffect::EndToRipple() {
  delete[] std::exchange(m_pFirst, nullptr);
  delete[] std::exchange(m_pSecond, nullptr);
  m_nFieldWidth = 0;
  m_nFieldHeight = 0;
  m_nIterations = 0;
  m_nPage = 0;
}

bool CRippleEffect::AllocateField() {
  const View picture = viewOfDepth(m_pSrcDib, 32);
  if (!picture) return false;
  if (m_pFirst != nullptr && m_nFieldWidth == picture.width() && m_nFieldHeight == picture.height()) {
    FlattenWater();
    return true;
  }
  EndToRipple();
  m_pFirst = newPage(picture.width(), picture.height());
  m_pSecond = newPage(picture.width(), picture.height());
  if (m_pFirst == nullptr || m_pSecond == nullptr) {
    EndToRipple();
    return false;
  }
  m_nFieldWidth = picture.width();
  m_nFieldHeight = picture.height();
  return true;
}

void CRippleEffect::RunRound() {
  for (int step = 0; step < stepsPerRound; ++step) {
    CalcWater(m_nPage, m_nDensity);
    m_nPage = 1 - m_nPage;
  }
}

BITMAPINFOHEADER* GenerateRippleEffect(BITMAPINFOHEADER* source, int iterations) {
  return CRippleEffect(source, iterations).GenerateRippleEffect();
}

#include "ripple/ripple.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include "dib/guard.h"
#include "ripple/water.h"

namespace {

using dibkit::HeightPage;

constexpr int stepsPerRound = 4;

/// Where a random disc has its centre along one axis; below 0 when that has no answer.
int drawPlace(int extent, int radius) {
  const std::int64_t room = std::int64_t{extent} - 2 * std::int64_t{radius} - 1;
  if (room == 0) return -1;
  return static_cast<int>(std::rand() % room + radius + 1);
}

/// Allocates a level page; null when memory runs out.
int* newPage(int width, int height) {
  return new (std::nothrow) int[static_cast<std::size_t>(width) * static_cast<std::size_t>(height)]();
}

}  // namespace

CRippleEffect::CRippleEffect(BITMAPINFOHEADER* source, int iterations) : m_nIterations(iterations) {
  InitializeParams(source);
}

// The height field is not released, on purpose: a copy may still run on it. EndToRipple does that.
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
  dibkit::raiseDisc(Field(page), x, y, radius, height);
}

void CRippleEffect::CalcWater(int page, int density) { Step(dibkit::stepWave, page, density); }
void CRippleEffect::CalcWaterBigFilter(int page, int density) { Step(dibkit::stepBroadWave, page, density); }

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
  const dibkit::ConstView picture = dibkit::viewOfDepth(source, 32);
  if (!picture || m_pFirst == nullptr) return nullptr;
  if (picture.width() != m_nFieldWidth || picture.height() != m_nFieldHeight) return nullptr;
  return dibkit::orOutOfMemory<BITMAPINFOHEADER*>(
      nullptr, [&] { return dibkit::refract(picture, Field(0)).release(); });
}

BITMAPINFOHEADER* CRippleEffect::GenerateRippleEffect() {
  CRippleEffect run(m_pSrcDib, 0);
  if (!run.AllocateField()) return nullptr;
  run.HeightBlob(run.m_nWidth / 2, run.m_nHeight / 2, 5, dibkit::dropHeight, 0);
  dibkit::layDrops(run.Field(0));
  for (int i = 0; i < m_nIterations; ++i) run.RunRound();
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
  if (AllocateField()) dibkit::layDrops(Field(0));
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
  const dibkit::View picture = dibkit::viewOfDepth(m_pSrcDib, 32);
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

#pragma once

#include "platform/win32.h"

/// Progress and cancellation of a long operation. The caller derives from this class and passes a pointer,
/// which may be null. SetProgress is the first virtual operation: the library calls it by its slot.
class CQorCommonProgress {
 public:
  /// Called after every line of the picture, on the thread that runs the operation.
  /// \param fraction done of the running stage, 0.0 to 1.0 (ScaledFraction makes one bar of several stages)
  /// \return anything; the library discards it
  virtual float SetProgress(float fraction) = 0;
  virtual ~CQorCommonProgress() = default;

  void SetPercent(int percent) { SetProgress(static_cast<float>(percent / 100.0)); }
  BYTE IsCancel() const { return m_bCancel; }

  /// Opens a stage that makes up `factor` of the whole.
  void BeginSubRange(float factor) {
    const float scale = CurrentScale() * factor;
    if (m_nScales < maximumDepth) m_fScales[m_nScales] = scale;
    ++m_nScales;
  }
  /// Closes the stage: its share of the whole is done.
  void EndSubRange() {
    m_fOffset += CurrentScale();
    if (m_nScales > 0) --m_nScales;
  }
  /// A stage's fraction as a fraction of the whole; for SetProgress of callers that show one bar.
  float ScaledFraction(float fraction) const { return m_fOffset + fraction * CurrentScale(); }

  /// Not 0 when the user asked to cancel; the library only reads it.
  BYTE m_bCancel = 0;

 private:
  // An array, since a growing container would tie host and library to one allocator.
  static constexpr int maximumDepth = 8;

  float CurrentScale() const {
    if (m_nScales == 0) return 1.0F;
    return m_fScales[(m_nScales < maximumDepth ? m_nScales : maximumDepth) - 1];
  }

  float m_fOffset = 0.0F;
  int m_nScales = 0;
  float m_fScales[maximumDepth] = {};
};

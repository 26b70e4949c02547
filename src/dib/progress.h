#pragma once

#include "platform/win32.h"

/// Progress and cancellation of a long operation. The host derives from this class and passes a pointer to an
/// object, or null. After each line of the picture, from the top, the operation calls SetProgress and then
/// reads m_bCancel; when that is not 0 it releases what it made and returns null. Both happen on the thread
/// that called the operation. One object serves one operation at a time.
///
/// SetProgress is the first virtual operation: the library calls it by its slot.
class CQorCommonProgress {
 public:
  /// Called after every line of the picture.
  /// \param fraction done of the running stage, 0.0 to 1.0 in whole hundredths; ScaledFraction gives that of
  ///     the whole operation
  /// \return ignored
  virtual float SetProgress(float fraction) = 0;
  virtual ~CQorCommonProgress() = default;

  /// SetProgress with a percentage.
  void SetPercent(int percent) { SetProgress(static_cast<float>(percent / 100.0)); }
  /// Whether m_bCancel is not 0.
  BYTE IsCancel() const { return m_bCancel; }

  /// Begins a stage that makes up `factor`, 0.0 to 1.0, of the whole. Stages follow each other: one inside
  /// another would count twice. So an operation with stages of its own (ConvertDIBTo256Grays) is run outside
  /// of stages.
  void BeginSubRange(float factor) {
    const float scale = CurrentScale() * factor;
    if (m_nScales < maximumDepth) m_fScales[m_nScales] = scale;
    ++m_nScales;
  }
  /// Ends the stage: its share of the whole is done.
  void EndSubRange() {
    m_fOffset += CurrentScale();
    if (m_nScales > 0) --m_nScales;
  }
  /// The running stage's fraction as a fraction of the whole, for a host that shows one bar.
  float ScaledFraction(float fraction) const { return m_fOffset + fraction * CurrentScale(); }

  /// Set by the host to cancel; the library only reads it. It is a plain byte: set it in SetProgress, or on
  /// the thread that runs the operation.
  BYTE m_bCancel = 0;

 private:
  // A fixed array, so that host and library share no allocator here.
  static constexpr int maximumDepth = 8;

  float CurrentScale() const {
    if (m_nScales == 0) return 1.0F;
    return m_fScales[(m_nScales < maximumDepth ? m_nScales : maximumDepth) - 1];
  }

  float m_fOffset = 0.0F;
  int m_nScales = 0;
  float m_fScales[maximumDepth] = {};
};

#pragma once

#include <utility>

#include "dib/progress.h"

namespace dibkit {

/// Calls row(y) for each line of an image from the top. After each it reports the fraction that is done to
/// `progress`, unless that is null, and checks whether the user has cancelled.
/// \return false when the user cancelled, also when that was during the last line
template <class Row>
bool forEachRowReporting(int lines, CQorCommonProgress* progress, Row&& row) {
  for (int y = 0; y < lines; ++y) {
    row(y);
    if (progress == nullptr) continue;
    progress->SetPercent(static_cast<int>((y + 1LL) * 100 / lines));
    if (progress->IsCancel() != 0) return false;
  }
  return true;
}

}  // namespace dibkit

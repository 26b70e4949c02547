#pragma once

#include <utility>

#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "dib/view.h"

namespace dibkit {

/// The loop that every conversion shares: calls row(to, y) for each line from the top, reports progress, and
/// stops when the user cancels. An image without width has no lines to report.
/// \param result a new image; null when it could not be allocated
/// \return the result; null when there was none or the user cancelled, also during the last line
template <class Row>
OwnedDib fillRows(OwnedDib result, CQorCommonProgress* progress, Row&& row) {
  if (!result) return nullptr;
  const View target(result.get());
  const bool finished = forEachRowReporting(target.lines(), progress, [&](int y) { row(target.row(y), y); });
  return finished ? std::move(result) : nullptr;
}

}  // namespace dibkit

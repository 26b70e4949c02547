#pragma once

#include <utility>

#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "dib/view.h"

namespace dibkit {

/// The loop that every conversion shares: calls row(from, to) for each line from the top, reports progress,
/// and stops when the user cancels. An image without width has no lines to report.
/// \param result an image of the source's size; null when it could not be allocated
/// \return the result; null when there was none or the user cancelled, also during the last line
template <class Row>
OwnedDib fillRows(const ConstView& source, OwnedDib result, CQorCommonProgress* progress, Row&& row) {
  if (!result) return nullptr;
  const View target(result.get());
  const bool finished =
      forEachRowReporting(source.lines(), progress, [&](int y) { row(source.row(y), target.row(y)); });
  return finished ? std::move(result) : nullptr;
}

}  // namespace dibkit

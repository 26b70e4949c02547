#pragma once

#include <utility>

#include "dib/allocate.h"
#include "dib/row_progress.h"
#include "dib/view.h"

namespace dibkit {

/// The loop that every conversion shares: calls row(to, y) for each line, reports progress, and stops when
/// the user cancels. An image without width has no lines to report. \param lineAt the line to be written when
/// so many are done \param result a new image; null when it could not be allocated \return the result; null
/// when there was none or the user cancelled, also during the last line
template <class LineAt, class Row>
OwnedDib fillRowsInOrder(OwnedDib result, CQorCommonProgress* progress, LineAt&& lineAt, Row&& row) {
  if (!result) return nullptr;
  const View target(result.get());
  const bool finished = forEachRowReporting(target.lines(), progress, [&](int done) {
    const int y = lineAt(done);
    row(target.row(y), y);
  });
  return finished ? std::move(result) : nullptr;
}

/// From the bottom line up. This is the order of memory, in which large images take up to a third less time.
template <class Row>
OwnedDib fillRows(OwnedDib result, CQorCommonProgress* progress, Row&& row) {
  const int last = result ? result->biHeight - 1 : 0;
  return fillRowsInOrder(
      std::move(result), progress, [last](int done) { return last - done; }, row);
}

/// From the top line down, for rows that depend on those above.
template <class Row>
OwnedDib fillRowsFromTop(OwnedDib result, CQorCommonProgress* progress, Row&& row) {
  return fillRowsInOrder(
      std::move(result), progress, [](int done) { return done; }, row);
}

}  // namespace dibkit

#pragma once

#include <memory>
#include <vector>

#include "platform/standin/bitmaps/pixels.h"
#include "platform/standin/gdi_object.h"

namespace dibkit::standin {

/// The size, depth and colours of a picture, as a BITMAPINFO describes them or a bitmap has them.
struct PictureFormat {
  int width = 0;
  int height = 0;
  int bitCount = 0;
  bool topDown = false;
  bool sixGreenBits = false;
  std::vector<Colour> colours;  ///< up to 8 bits: one for each index

  /// Bytes from one row to the next: rows fill whole DWORDs. In 64 bits neither this nor byteCount overflows.
  std::int64_t stride() const { return (std::int64_t{width} * bitCount + 31) / 32 * 4; }
  std::int64_t byteCount() const { return stride() * height; }
  /// The pixels in a block of `rows` rows, of which the lowest comes first or last, depending on the format.
  Pixels pixelsAt(BYTE* block, int rows) const;
};

/// Reads the format from the header and colour table of a packed DIB. Colours that the table lacks are black.
/// May throw std::bad_alloc.
/// \return false for a header that describes no picture: no size, an unknown depth or compression, or more
/// than
///     2 GiB
bool readFormat(const BITMAPINFO* info, PictureFormat& format);

/// The object behind an HBITMAP.
class BitmapObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::bitmap;

  /// A bitmap with all pixels 0. Throws std::bad_alloc when there is no memory for it.
  BitmapObject(PictureFormat format, bool section);

  Pixels pixels() const { return format.pixelsAt(bits_.get(), format.height); }
  /// The rows in memory, which the owner of a section shares.
  BYTE* bits() const { return bits_.get(); }
  /// Whether it is a DIB section, whose rows and colours its owner may change.
  bool isSection() const { return section_; }

  int describe(int byteCount, void* out) const override;

  PictureFormat format;

 private:
  bool section_;
  std::unique_ptr<BYTE[]> bits_;
};

}  // namespace dibkit::standin

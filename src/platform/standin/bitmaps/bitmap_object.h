#pragma once

#include <memory>
#include <vector>

#include "platform/standin/bitmaps/pixels.h"
#include "platform/standin/gdi_object.h"

namespace dibkit::standin {

/// The format of a picture: what a BITMAPINFO says, or what a bitmap is made with.
struct PictureFormat {
  int width = 0;
  int height = 0;
  int bitCount = 0;
  bool topDown = false;
  bool sixGreenBits = false;
  std::vector<Colour> colours;  ///< up to 8 bits: 1 << bitCount of them

  /// Bytes from one row to the next: rows fill whole DWORDs. 64 bits hold this and the next for any size.
  std::int64_t stride() const { return (std::int64_t{width} * bitCount + 31) / 32 * 4; }
  std::int64_t byteCount() const { return stride() * height; }
  /// The pixels in a block that holds `rows` of the rows, the lowest first or last as the format says.
  Pixels pixelsAt(BYTE* block, int rows) const;
};

/// Reads the format from the header and colour table of a packed DIB. Nothing for a header that describes
/// no picture: no size, an unknown depth or compression, or more than 2 GiB. Colours that the table lacks are
/// black. May throw std::bad_alloc.
bool readFormat(const BITMAPINFO* info, PictureFormat& format);

/// What an HBITMAP stands for.
class BitmapObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::bitmap;

  /// A bitmap with all pixels 0. Throws std::bad_alloc when there is no memory for it.
  BitmapObject(PictureFormat format, bool section);

  Pixels pixels() const { return format.pixelsAt(bits_.get(), format.height); }
  /// The rows as they lie in memory, which is what the owner of a section sees.
  BYTE* bits() const { return bits_.get(); }
  /// Whether it is a DIB section, which has rows and colours that its owner sees and changes.
  bool isSection() const { return section_; }

  int describe(int byteCount, void* out) const override;

  PictureFormat format;

 private:
  bool section_;
  std::unique_ptr<BYTE[]> bits_;
};

}  // namespace dibkit::standin

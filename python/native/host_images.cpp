#include "host_images.h"

namespace binding {

host::Picture pictureOf(const Image& image) {
  host::requireUsableSize(image.width(), image.height());
  BITMAPINFOHEADER* dib = image.dib();
  return host::Picture(dibkit::OwnedDib(
      image.depth() == 32 ? CBitmapCreator::Clone(dib) : CDIB32::ConvertTo32BitsDIB(dib, nullptr, 255, 0)));
}

BytesArgument::BytesArgument(const py::object& object) {
  if (PyObject_CheckBuffer(object.ptr()) == 0)
    throw py::type_error(std::string("bytes are needed, not ") + Py_TYPE(object.ptr())->tp_name);
  info_ = py::reinterpret_borrow<py::buffer>(object).request();
  if (info_.itemsize != 1 || info_.ndim > 1 || (info_.ndim == 1 && info_.strides[0] != 1))
    throw py::type_error("bytes are needed in one piece");
  data_ = static_cast<const std::uint8_t*>(info_.ptr);
  size_ = static_cast<std::size_t>(info_.size);
}

}  // namespace binding

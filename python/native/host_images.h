#pragma once

#include "arguments.h"
#include "host/bytes.h"
#include "host/picture.h"

/// \file
/// What the code that the command line shares takes and gives.
namespace binding {

/// A copy of an image of any depth, with alpha.
host::Picture pictureOf(const Image& image);

inline py::bytes pythonBytes(const host::Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The bytes of an object that has the buffer protocol, which it keeps alive.
class BytesArgument {
 public:
  BytesArgument() = default;
  /// Throws py::type_error unless the object is contiguous bytes.
  explicit BytesArgument(const py::object& object);

  operator host::ByteView() const { return {data_, size_}; }  // NOLINT: an argument of host/

 private:
  py::buffer_info info_;
  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace binding

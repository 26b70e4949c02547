#include "host/formats/formats.h"
#include "host_images.h"

namespace binding {

namespace {

/// Files are read and written by Python, which knows all kinds of paths and file objects.
py::object filesModule() { return py::module_::import("dibkit._files"); }
py::object pillowModule() { return py::module_::import("dibkit._pillow"); }

Image decoded(const py::object& object, bool strict) {
  const BytesArgument bytes(object);
  const py::gil_scoped_release unlocked;
  const auto strictness = strict ? host::Strictness::strict : host::Strictness::lenient;
  const host::Animation animation = host::readAnimation(bytes, {host::Keep::firstFrame, strictness});
  return made(CBitmapCreator::Clone(animation.frames.front().picture.dib()));
}

py::bytes encoded(const Image& image, const std::string& format) {
  require(image.width() > 0 && image.height() > 0, "an image without pixels cannot be written");
  require(format == "png" || format == "bmp", "an image is written as \"png\" or \"bmp\"");
  host::Bytes bytes;
  {
    const py::gil_scoped_release unlocked;
    bytes = format == "png" ? host::writePng(image.dib()) : host::writeBmp(image.dib());
  }
  return pythonBytes(bytes);
}

}  // namespace

void defineImageFiles(py::class_<Image>& image) {
  image
      .def_static(
          "open",
          [](const py::object& file, bool strict) {
            return decoded(filesModule().attr("read")(file), strict);
          },
          py::arg("file"), py::arg("strict") = false,
          R"(A picture from a PNG, JPEG, GIF, BMP or WebP, as an image of 32 bits.

        Parameters
        ----------
        file : path, binary file or bytes
            Of an animation the first frame is read.
        strict : bool
            Refuse a damaged file, instead of showing what can be decoded.

        Raises
        ------
        OSError
            When the file cannot be read.
        ValueError
            When it holds no picture.)")
      .def("encode", &encoded, py::arg("format") = "png",
           "The bytes of a PNG or BMP file (\"png\", \"bmp\") at the image's own depth; 32 bits keep their "
           "alpha.")
      .def(
          "save",
          [](const Image& self, const py::object& file, const py::object& format) {
            const std::string name = format.is_none()
                                         ? py::cast<std::string>(filesModule().attr("format_of")(file))
                                         : std::string(py::str(format));
            filesModule().attr("write")(file, encoded(self, name));
          },
          py::arg("file"), py::arg("format") = py::none(),
          "Write a PNG or BMP to a path, whose ending decides, or to a binary file. Raises OSError.")
      .def("_repr_png_", [](const Image& self) { return encoded(self, "png"); })
      .def_static(
          "from_pil", [](const py::object& picture) { return pillowModule().attr("from_pil")(picture); },
          py::arg("picture"),
          "A new image of a Pillow one: 1 bit of mode 1, 8 bits of L and P, 24 bits of RGB, else 32 bits.")
      .def(
          "to_pil", [](const py::object& self) { return pillowModule().attr("to_pil")(self); },
          "A new Pillow image: mode P for an image with a palette, RGBA for 32 bits, else RGB.");
}

}  // namespace binding

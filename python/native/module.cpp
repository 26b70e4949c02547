#include "module.h"

#include <new>

#include "host/animation/gif_images.h"
#include "host/errors.h"
#include "progress.h"

/// The module dibkit._native: all that Python needs of the library and of host/.
PYBIND11_MODULE(_native, module) {
  using namespace binding;
  static const py::exception<Cancelled> cancelled(module, "Cancelled");
  py::register_exception_translator([](std::exception_ptr pointer) {
    try {
      if (pointer) std::rethrow_exception(pointer);
    } catch (const Cancelled&) {
      PyErr_SetString(cancelled.ptr(), "cancelled by the progress function");
    } catch (const std::bad_alloc&) {
      PyErr_SetString(PyExc_MemoryError, "there is not enough memory");
    } catch (const host::UsageError& error) {
      PyErr_SetString(PyExc_ValueError, error.what());
    } catch (const host::FormatError& error) {
      PyErr_SetString(PyExc_ValueError, error.what());
    } catch (const host::TooManyColours& error) {
      PyErr_SetString(PyExc_ValueError, error.what());
    }
  });
  module.attr("Cancelled").attr("__doc__") = "Work was cancelled: its progress function returned False.";
  module.def("version", &dibkit::Version, "The version of the library.");
  remember(module, "version", "dibkit::Version");
  for (const char* name : {"Cancelled", "Effect", "dithers", "easings", "fits"}) remember(module, name, "");
  remember(module, "Image", "CBitmapCreator::CreateDibImage, CDIB32::CreateBlank32BitsDIB");
  remember(module, "Image.filled", "CDIB32::CreateSimple32BitsDIB");
  remember(module, "Image.copy", "CBitmapCreator::Clone");
  remember(module, "Image.colour_at", "GetPixelRGB");
  remember(module, "Region", "");
  for (auto* family :
       {defineImage, defineRegion, defineAnimations, defineCompositing, defineConversions, defineDrawing,
        defineEffects, defineFills, defineFilters, defineFrames, defineMasks, defineMerging, defineOverlays,
        definePalettes, definePictures, defineRipples, defineScaling, defineSelections, defineSplitting})
    family(module);
}

#include "dib32/blend_kernels.h"
#include "dib32/blend_kernels_body.h"

namespace dibkit {

extern const BlendKernels avx2BlendKernels = kernelsOfThisSource;

}  // namespace dibkit

#include "dib32/blend_kernels.h"
#include "dib32/blend_kernels_body.h"

namespace dibkit {

const BlendKernels BlendKernels::avx2 = kernelsOfThisSource;

}  // namespace dibkit

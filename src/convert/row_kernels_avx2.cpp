#include "convert/row_kernels.h"
#include "convert/row_kernels_body.h"

namespace dibkit {

extern const RowKernels avx2RowKernels = kernelsOfThisSource;

}  // namespace dibkit

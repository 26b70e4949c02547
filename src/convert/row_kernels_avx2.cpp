#include "convert/row_kernels.h"
#include "convert/row_kernels_body.h"

namespace dibkit {

const RowKernels RowKernels::avx2 = kernelsOfThisSource;

}  // namespace dibkit

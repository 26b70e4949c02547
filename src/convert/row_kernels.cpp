#include "convert/row_kernels.h"

#include "convert/row_kernels_body.h"
#include "platform/kernels.h"

namespace dibkit {

const RowKernels RowKernels::plain = kernelsOfThisSource;

const RowKernels& rowKernels() { return fastestKernels<RowKernels>(); }

}  // namespace dibkit

#include "operation.h"

namespace interface_test {

const std::vector<std::unique_ptr<Operation> (*)()> operations = {
#include "operations.inc"
};

}  // namespace interface_test

#include "scope/scaling_kernels.h"

namespace kestrion {

// There are none for this processor.
const ScalingKernels* VectorScalingKernels() {
    return nullptr;
}

}  // namespace kestrion

#pragma once

// Vector lanes: the same operation on several neighbouring values at once, with the roundings of
// one at a time. A file of lane kernels (base/lane_code.h) is compiled twice: once for every x86-64
// machine, into the namespace `narrow`, and once for machines with AVX2, into the namespace `wide`.
// Its header declares the kernels with ZELMO_DECLARE_LANE_KERNEL, and callers pick one of the two
// with ZELMO_PICK_LANES.

namespace zelmo {

/// Whether this machine has the wide lanes and nobody has switched them off.
bool HasWideLanes();

/// For comparisons: switches to the narrow lanes, or back to the widest that the machine has.
void AllowWideLanes(bool allowed);

}  // namespace zelmo

/// Declares a lane kernel for both widths: ZELMO_DECLARE_LANE_KERNEL(void Fill(float* out, int n));
#define ZELMO_DECLARE_LANE_KERNEL(...) \
    namespace narrow {                 \
    __VA_ARGS__;                       \
    }                                  \
    namespace wide {                   \
    __VA_ARGS__;                       \
    }

/// The kernel of that name for this machine: ZELMO_PICK_LANES(Fill)(out, n);
#define ZELMO_PICK_LANES(kernel) (::zelmo::HasWideLanes() ? &wide::kernel : &narrow::kernel)

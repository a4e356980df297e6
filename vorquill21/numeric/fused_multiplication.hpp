#pragma once

namespace vorquill21 {

/// Whether the processor has fused multiplication, and the functions compiled for it are there. Not part of
/// the interface.
inline bool HasFusedMultiplication() {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
#else
  return false;
#endif
}

}  // namespace vorquill21

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>  // defines __GLIBC__ where that is the C library

/// Before a function: builds it for AVX2, too, and takes that form where the processor has it. The
/// compiler makes the vector code, so this suits loops whose turns do not depend on one another.
/// Without fused multiply-add, which would round once where the other form rounds twice, both forms
/// give the same bits.
///
/// The loader chooses the form by an indirect function, which only the GNU C library has. It does
/// so before a sanitizer has started, so these take the form for any processor. So does clang,
/// which wants such a function to be defined before its first call.
#if defined(__x86_64__) && defined(__GLIBC__) && !defined(__clang__) &&                            \
    !defined(KESTRUNE_PLAIN_DSP) && !defined(__SANITIZE_ADDRESS__) &&                              \
    !defined(__SANITIZE_THREAD__)
#define ORVANE_VECTOR_CLONES [[gnu::target_clones("avx2", "default")]]
#else
#define ORVANE_VECTOR_CLONES
#endif

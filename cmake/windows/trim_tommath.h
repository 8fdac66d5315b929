// Trims LibTomMath for a DLL; included before each of its files.
//
// Leaves out algorithms that numbers of up to 2240 bits never use, or that only help
// special moduli: the general ones give the same results. Only negative exponents are
// no longer supported, and no key has one.
#pragma once

#include "tommath_private.h"

#undef BN_S_MP_TOOM_MUL_C
#undef BN_S_MP_TOOM_SQR_C
#undef BN_S_MP_KARATSUBA_MUL_C
#undef BN_S_MP_KARATSUBA_SQR_C
#undef BN_S_MP_BALANCE_MUL_C
#undef BN_MP_DR_IS_MODULUS_C
#undef BN_MP_DR_SETUP_C
#undef BN_MP_DR_REDUCE_C
#undef BN_MP_REDUCE_IS_2K_C
#undef BN_MP_REDUCE_2K_SETUP_C
#undef BN_MP_REDUCE_2K_C
#undef BN_MP_REDUCE_IS_2K_L_C
#undef BN_MP_INVMOD_C

// A sum of products has an array of this many digits on the stack; at 28 bits a
// digit that is for moduli of up to 3108 bits, and larger ones use the slow algorithm.
// With it no frame exceeds the 4096 bytes of a page: the system commits stack page
// by page, and does not handle exceptions in larger frames.
#undef MP_WARRAY
#define MP_WARRAY 224

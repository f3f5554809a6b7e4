// ctype.cpp: character classes of single bytes, the same in every locale. Everyone uses the table.
#include "core/ort_core.h"

namespace {
constexpr unsigned char S = ORT_SPACE, D = ORT_DIGIT | ORT_HEX, U = ORT_UPPER, L = ORT_LOWER;
constexpr unsigned char V = U | ORT_HEX, M = L | ORT_HEX;
} // namespace

// clang-format off
const unsigned char ort_ctype[256] = {
    0, 0, 0, 0, 0, 0, 0, 0, 0, S, S, S, S, S, 0, 0, // 00
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, // 10
    S, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, // 20
    D, D, D, D, D, D, D, D, D, D, 0, 0, 0, 0, 0, 0, // 30
    0, V, V, V, V, V, V, U, U, U, U, U, U, U, U, U, // 40
    U, U, U, U, U, U, U, U, U, U, U, 0, 0, 0, 0, 0, // 50
    0, M, M, M, M, M, M, L, L, L, L, L, L, L, L, L, // 60
    L, L, L, L, L, L, L, L, L, L, L, 0, 0, 0, 0, 0, // 70
};
// clang-format on

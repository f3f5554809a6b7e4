// main.cpp: a libFuzzer program of the target that FUZZ_TARGET names.
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  testing::InitGoogleTest();
  testing::FLAGS_gtest_throw_on_failure = true; // ends the program with a finding
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  FUZZ_TARGET({reinterpret_cast<const char *>(data), size});
  return 0;
}

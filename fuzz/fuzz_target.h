#pragma once
// Every target defines this. Under clang with RK4_FUZZ it is libFuzzer's entry
// point; otherwise the replay driver feeds it the seed corpus as a test.

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// A property a target checks: a broken one must stop the run loudly, in a
// release build too.
#define FUZZ_REQUIRE(condition)                                                                                        \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            __builtin_trap();                                                                                          \
    } while (false)

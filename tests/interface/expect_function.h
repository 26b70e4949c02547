#pragma once

#include <gtest/gtest.h>

/// Compiles only for a function of exactly the given type, picks the overload of that type, and links only
/// when it is exported.
template <class Signature>
void expectFunction(Signature* function) {
  EXPECT_NE(function, nullptr);
}

#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "platform/win32.h"

namespace test {

inline HPALETTE twoColours() {
  std::vector<BYTE> block(4 + 2 * 4);
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = 2;
  description->palPalEntry[0] = {1, 2, 3, 0};
  description->palPalEntry[1] = {4, 5, 6, 4};
  return CreatePalette(description);
}

/// Puts the process's clipboard back as it was: empty and closed.
class Clipboard : public testing::Test {
 protected:
  void TearDown() override {
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
  }
};

}  // namespace test

#include <cstring>
#include <new>

#include "platform/win32.h"

namespace dibkit::standin {
namespace {

/// Precedes the bytes of a block, which it aligns as the platform does.
struct alignas(16) BlockHeader {
  SIZE_T bytes;
  UINT locks;
};

BlockHeader* headerOf(HGLOBAL block) { return static_cast<BlockHeader*>(block) - 1; }

}  // namespace
}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
  if (bytes > SIZE_MAX - sizeof(BlockHeader)) return nullptr;
  void* memory = ::operator new(sizeof(BlockHeader) + bytes, std::nothrow);
  if (memory == nullptr) return nullptr;
  auto* header = new (memory) BlockHeader{bytes, 0};
  if ((flags & GMEM_ZEROINIT) != 0) std::memset(header + 1, 0, bytes);
  return header + 1;
}

void* GlobalLock(HGLOBAL block) {
  if (block != nullptr) ++headerOf(block)->locks;
  return block;
}

// FALSE when the block is no longer locked.
BOOL GlobalUnlock(HGLOBAL block) {
  if (block == nullptr || headerOf(block)->locks == 0) return FALSE;
  return --headerOf(block)->locks != 0 ? TRUE : FALSE;
}

SIZE_T GlobalSize(HGLOBAL block) { return block != nullptr ? headerOf(block)->bytes : 0; }

HGLOBAL GlobalFree(HGLOBAL block) {
  if (block != nullptr) ::operator delete(headerOf(block));
  return nullptr;
}

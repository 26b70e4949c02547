#include <algorithm>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/guard.h"
#include "platform/standin/clipboard/clipboard_formats.h"

namespace dibkit::standin {
namespace {

void release(UINT format, HANDLE data) {
  if (format == CF_PALETTE || format == CF_BITMAP) {
    DeleteObject(data);
  } else {
    GlobalFree(data);
  }
}

/// The clipboard of a process: what was put on it, and the formats that are synthesised from that.
class Clipboard {
 public:
  ~Clipboard() { clear(); }

  BOOL open(HWND window) {
    const std::lock_guard lock(mutex_);
    const auto thread = std::this_thread::get_id();
    if (open_ && (window != window_ || thread != thread_)) return FALSE;
    open_ = true;
    window_ = window;
    thread_ = thread;
    return TRUE;
  }

  BOOL close() {
    const std::lock_guard lock(mutex_);
    if (!mayUse()) return FALSE;
    open_ = false;
    return TRUE;
  }

  BOOL empty() {
    const std::lock_guard lock(mutex_);
    if (!mayUse()) return FALSE;
    clear();
    return TRUE;
  }

  HANDLE set(UINT format, HANDLE data) {
    const std::lock_guard lock(mutex_);
    if (!mayUse() || format == 0 || data == nullptr) return nullptr;
    if (Item* item = find(put_, format)) {
      if (item->data != data) release(format, item->data);
      item->data = data;
    } else {
      put_.push_back({format, data});
    }
    releaseAll(made_);  // synthesised from the former data
    return data;
  }

  HANDLE get(UINT format) {
    const std::lock_guard lock(mutex_);
    if (!mayUse()) return nullptr;
    if (const Item* item = find(put_, format)) return item->data;
    if (const Item* item = find(made_, format)) return item->data;
    made_.reserve(2);
    const Item* dib = find(put_, CF_DIB);
    const HANDLE made = dib != nullptr ? makeOfDib(format, dib->data) : nullptr;
    if (made != nullptr) made_.push_back({format, made});
    return made;
  }

  /// The formats in the order in which they were put, then those that can be synthesised.
  UINT next(UINT format) {
    const std::lock_guard lock(mutex_);
    if (!mayUse()) return 0;
    const std::vector<UINT> all = formats();
    if (format == 0) return all.empty() ? 0 : all.front();
    const auto found = std::find(all.begin(), all.end(), format);
    return found != all.end() && found + 1 != all.end() ? found[1] : 0;
  }

  BOOL has(UINT format) {
    const std::lock_guard lock(mutex_);
    const std::vector<UINT> all = formats();
    return std::find(all.begin(), all.end(), format) != all.end() ? TRUE : FALSE;
  }

 private:
  struct Item {
    UINT format;
    HANDLE data;
  };

  using Items = std::vector<Item>;

  bool mayUse() const { return open_ && thread_ == std::this_thread::get_id(); }
  static Item* find(Items& items, UINT format) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.format == format; });
    return found != items.end() ? &*found : nullptr;
  }
  std::vector<UINT> formats() {
    std::vector<UINT> all;
    for (const Item& item : put_) all.push_back(item.format);
    if (find(put_, CF_DIB) == nullptr) return all;
    for (const UINT made : {CF_BITMAP, CF_DIBV5}) {
      if (find(put_, made) == nullptr) all.push_back(made);
    }
    return all;
  }
  static void releaseAll(Items& items) {
    for (const Item& item : items) release(item.format, item.data);
    items.clear();
  }
  void clear() {
    releaseAll(put_);
    releaseAll(made_);
  }

  std::mutex mutex_;
  Items put_;
  Items made_;  ///< synthesised on demand
  bool open_ = false;
  HWND window_ = nullptr;
  std::thread::id thread_;
};

Clipboard& clipboard() {
  static Clipboard only;
  return only;
}

}  // namespace
}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

BOOL OpenClipboard(HWND owner) { return clipboard().open(owner); }
BOOL CloseClipboard() { return clipboard().close(); }
BOOL EmptyClipboard() { return clipboard().empty(); }

HANDLE SetClipboardData(UINT format, HANDLE data) {
  return catchOutOfMemory([&] { return clipboard().set(format, data); });
}

HANDLE GetClipboardData(UINT format) {
  return catchOutOfMemory([&] { return clipboard().get(format); });
}

UINT EnumClipboardFormats(UINT format) {
  return catchOutOfMemory([&] { return clipboard().next(format); });
}

BOOL IsClipboardFormatAvailable(UINT format) {
  return catchOutOfMemory([&] { return clipboard().has(format); });
}

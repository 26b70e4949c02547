#pragma once

#include <cstdint>
#include <unordered_map>

/// A position in the enumeration of a CMap; null at its end.
struct MapPosition;
using POSITION = MapPosition*;

/// The framework's hash map, on a standard container. The library uses it as colour map (colour key to
/// palette index) and never depends on the order of enumeration.
template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap {
 public:
  /// \param blockSize how many associations the framework allocates at a time; without effect here
  explicit CMap(std::intptr_t blockSize = 10) { static_cast<void>(blockSize); }

  std::intptr_t GetCount() const { return static_cast<std::intptr_t>(entries_.size()); }
  std::intptr_t GetSize() const { return GetCount(); }
  bool IsEmpty() const { return entries_.empty(); }

  /// Sizes the table ahead of its use; the contents stay.
  void InitHashTable(unsigned int size, bool allocateNow = true) {
    if (allocateNow) entries_.reserve(size);
  }

  /// Copies the key's value to `value` when the map has the key; otherwise `value` is unchanged.
  int Lookup(ARG_KEY key, VALUE& value) const {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return 0;
    value = found->second;
    return 1;
  }

  /// The key's value; a default value is added when the map lacks the key.
  VALUE& operator[](ARG_KEY key) { return entries_[key]; }
  void SetAt(ARG_KEY key, ARG_VALUE value) { entries_[key] = value; }
  int RemoveKey(ARG_KEY key) { return entries_.erase(key) != 0; }
  void RemoveAll() { entries_.clear(); }

  POSITION GetStartPosition() const { return positionOf(entries_.begin()); }

  /// Gives the association at `position` and advances the position, to null after the last one.
  void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const {
    const auto* entry = reinterpret_cast<const Entry*>(position);
    key = entry->first;
    value = entry->second;
    auto next = entries_.find(entry->first);
    position = positionOf(++next);
  }

 private:
  using Entries = std::unordered_map<KEY, VALUE>;
  using Entry = typename Entries::value_type;

  POSITION positionOf(typename Entries::const_iterator at) const {
    if (at == entries_.end()) return nullptr;
    return reinterpret_cast<POSITION>(const_cast<Entry*>(&*at));
  }

  Entries entries_;
};

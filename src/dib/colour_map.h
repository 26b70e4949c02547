#pragma once

#include <cstdint>
#include <unordered_map>

/// A position in the enumeration of a CMap; null at its end.
struct MapPosition;
using POSITION = MapPosition*;

/// The framework's hash map, on a standard container. The operations use it as a colour map, colour key to
/// palette index; CPaletteFuns describes the keys. No result depends on the order of enumeration.
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

  /// Copies the key's value to `value` if the map has the key; else `value` is unchanged.

  /// \return 1 if the map has the key, else 0
  int Lookup(ARG_KEY key, VALUE& value) const {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return 0;
    value = found->second;
    return 1;
  }

  /// The key's value, added as VALUE() if the map lacks the key.
  VALUE& operator[](ARG_KEY key) { return entries_[key]; }
  /// Adds the key, or replaces its value.
  void SetAt(ARG_KEY key, ARG_VALUE value) { entries_[key] = value; }
  /// \return whether the map had the key
  int RemoveKey(ARG_KEY key) { return entries_.erase(key) != 0; }
  void RemoveAll() { entries_.clear(); }

  /// Where an enumeration starts; null for an empty map.
  POSITION GetStartPosition() const { return positionOf(entries_.begin()); }

  /// Gives the association at `position`, which must not be null, and moves the position to the next one, to
  /// null after the last.
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

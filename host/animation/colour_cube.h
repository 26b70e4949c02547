#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

namespace host {

/// A value for each of the 2^24 colours. Pictures use few regions of the colour cube, so memory is taken for
/// blocks of 8 x 8 x 8 colours, each when one of its colours is used first. Several threads may use one
/// object at once as far as Value allows it.
template <class Value>
class ColourCube {
 public:
  static constexpr int side = 8;  ///< of a block
  /// The values of a block; red varies slowest, blue fastest.
  using Block = std::array<Value, std::size_t{side} * side * side>;

  ColourCube() : blocks_(std::size_t{blocksAcross} * blocksAcross * blocksAcross) {}
  ColourCube(const ColourCube&) = delete;
  ColourCube& operator=(const ColourCube&) = delete;
  ~ColourCube() {
    for (std::atomic<Block*>& block : blocks_) delete block.load();
  }

  /// The value of a colour. \param fill fill(block) sets the values of the colour's block when it is new
  template <class Fill>
  Value& at(int red, int green, int blue, const Fill& fill) {
    std::atomic<Block*>& block = blocks_[numberOf(red / side, green / side, blue / side, blocksAcross)];
    Block* used = block.load(std::memory_order_acquire);
    if (used == nullptr) used = added(block, fill);
    return (*used)[numberOf(red % side, green % side, blue % side, side)];
  }
  /// The same with new values as `Value{}`.
  Value& at(int red, int green, int blue) {
    return at(red, green, blue, [](Block&) {});
  }

 private:
  static constexpr int blocksAcross = 256 / side;

  static constexpr std::size_t numberOf(int red, int green, int blue, int across) {
    return static_cast<std::size_t>((red * across + green) * across + blue);
  }

  /// When two threads make the same block at once, that of the first one stays.
  template <class Fill>
  static Block* added(std::atomic<Block*>& block, const Fill& fill) {
    auto made = std::make_unique<Block>();
    fill(*made);
    Block* present = nullptr;
    if (!block.compare_exchange_strong(present, made.get(), std::memory_order_acq_rel)) return present;
    return made.release();
  }

  std::vector<std::atomic<Block*>> blocks_;
};

}  // namespace host

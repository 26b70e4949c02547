#include <cstddef>
#include <cstring>

#include <dibkit.h>
#include <gtest/gtest.h>

/// What hosts know of the classes without calling them, as recorded in layout.txt.
namespace {

constexpr std::size_t pointer = sizeof(void*);
// Complete and deleting, in the tables of the compilers that this test reads.
constexpr std::size_t destructor = 2;

/// The number in a pointer to a field.
template <class Field>
std::size_t offsetOf(Field field) {
  std::size_t number = 0;
  std::memcpy(&number, &field, sizeof(number));
  return number;
}

/// The place of a virtual operation in its class's table: the offset in the pointer to it, whose lowest bit
/// may tell that the operation is virtual.
template <class Member>
std::size_t slotOf(Member member) {
  return offsetOf(member) / pointer;
}

/// How many slots a class has: the next one is the first that a derived class adds.
template <class Base>
std::size_t slotsOf() {
  struct Derived : Base {
    virtual void added() {}
  };
  return slotOf(&Derived::added);
}

TEST(Layout, IsTheOneThatHostsWereBuiltWith) {
#if defined(_MSC_VER)
  GTEST_SKIP() << "this compiler's pointers to members hold no slots";
#endif
#include "layout.inc"
}

}  // namespace

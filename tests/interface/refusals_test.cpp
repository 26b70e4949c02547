#include <ctime>
#include <vector>

#include <gtest/gtest.h>

#include "operation.h"

#if defined(__SANITIZE_ADDRESS__)
/// Memory that cannot be had is one of the cases.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#endif

/// What every exported operation makes of wrong arguments: its failure result, images as they were, at once.
namespace {

using interface_test::Operation;
using interface_test::Parameter;
using interface_test::Verdict;

/// A wrong value of a parameter.
struct Wrong {
  std::size_t parameter, value;
};

/// What wrong arguments come to. Of several, one may make up for another.
Verdict verdictOf(const Operation& operation, const std::vector<Wrong>& wrong) {
  Verdict worst = Verdict::right;
  for (const auto& [p, value] : wrong) worst = std::max(worst, operation.parameters()[p]->verdict(value));
  return wrong.size() > 1 && worst != Verdict::refused ? Verdict::taken : worst;
}

void check(Operation& operation, const std::vector<Wrong>& wrong) {
  const auto& parameters = operation.parameters();
  testing::Message arguments;
  for (Parameter* parameter : parameters) parameter->choose(0);
  for (const auto& [p, value] : wrong) {
    parameters[p]->choose(value);
    arguments << " with parameter " << p << ": " << parameters[p]->name(value);
  }
  SCOPED_TRACE(operation.name() + arguments.GetString());
  const Verdict verdict = verdictOf(operation, wrong);
  bool failed = false;
  [[maybe_unused]] const std::clock_t begin = std::clock();
  EXPECT_NO_THROW(failed = operation.fails());
#if defined(NDEBUG) && !defined(_WIN32)  // where the clock is the program's own
  EXPECT_LE(double(std::clock() - begin) / CLOCKS_PER_SEC, 0.05);
#endif
  EXPECT_FALSE(fails(verdict) && !failed) << "is not refused";
  EXPECT_FALSE(verdict == Verdict::right && operation.sure() && failed) << "is refused";
  for (std::size_t p = 0; p < parameters.size(); ++p) {
    EXPECT_EQ(parameters[p]->settle(verdict), "") << "parameter " << p;
  }
}

/// Calls attempt(wrong) for the wrong values of a parameter.
template <class Attempt>
void forEachWrong(const Operation& operation, std::size_t parameter, Attempt&& attempt) {
  for (std::size_t i = 1; i < operation.parameters()[parameter]->count(); ++i) attempt(Wrong{parameter, i});
}

TEST(EveryOperation, RefusesWhatItCannotUseAndLeavesTheRestAlone) {
  for (const auto& make : interface_test::operations) {
    const auto operation = make();
    const auto& parameters = operation->parameters();
    check(*operation, {});
    for (std::size_t q = 0; q < parameters.size(); ++q) {
      forEachWrong(*operation, q, [&](const Wrong& second) {
        check(*operation, {second});
        for (std::size_t p = 0; p < q && parameters[q]->isExtent(); ++p) {
          if (!parameters[p]->isExtent()) continue;
          forEachWrong(*operation, p, [&](const Wrong& first) { check(*operation, {first, second}); });
        }
      });
    }
  }
}

}  // namespace

// The last few answers, kept as long as they are true and made true again at the cost of what changed.
// Scripts ask again at every count and every open, and several of them may take turns.
#pragma once

#include <algorithm>
#include <cstddef>
#include <list>
#include <memory>
#include <numeric>

#include "eventkit/embedded/store/basis.h"
#include "eventkit/types.h"

namespace ek::embedded {

// Answer: constructible from records and Conditions; conditions(), isCurrent(basis), bringUpToDate(database,
// basis), bytes().
template <class Answer>
class KeptAnswers {
 public:
  explicit KeptAnswers(std::shared_ptr<Records> records) : records_(std::move(records)) {}

  // The answer to a predicate that was asked before; null for one that was not.
  std::shared_ptr<const Answer> answerTo(const std::shared_ptr<const Predicate>& predicate,
                                         Database& database) {
    const auto kept = std::ranges::find(kept_, predicate, &Kept::predicate);
    return kept == kept_.end() ? nullptr : current(kept, database);
  }

  // The answer to a predicate with these conditions.
  std::shared_ptr<const Answer> answerTo(const std::shared_ptr<const Predicate>& predicate,
                                         const typename Answer::Conditions& conditions, Database& database) {
    const auto kept = std::ranges::find_if(
        kept_, [&](const Kept& each) { return each.answer->conditions() == conditions; });
    if (kept != kept_.end()) {
      kept->predicate = predicate;
      return current(kept, database);
    }
    kept_.push_front({predicate, std::make_shared<Answer>(records_, conditions)});
    return current(kept_.begin(), database);
  }

 private:
  struct Kept {
    std::shared_ptr<const Predicate> predicate;
    std::shared_ptr<Answer> answer;
  };
  using Place = typename std::list<Kept>::iterator;

  static constexpr std::size_t kMostAnswers = 16;
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

  std::shared_ptr<const Answer> current(Place kept, Database& database) {
    kept_.splice(kept_.begin(), kept_, kept);
    const Basis basis = currentBasis(*records_, database);
    if (!kept->answer->isCurrent(basis)) {
      // What was given out stays as it was.
      if (kept->answer.use_count() > 1) kept->answer = std::make_shared<Answer>(*kept->answer);
      kept->answer->bringUpToDate(database, basis);
      forgetOldest();
    }
    return kept_.front().answer;
  }

  void forgetOldest() {
    const auto bytes = [this] {
      return std::accumulate(kept_.begin(), kept_.end(), std::size_t{0},
                             [](std::size_t sum, const Kept& each) { return sum + each.answer->bytes(); });
    };
    while (kept_.size() > 1 && (kept_.size() > kMostAnswers || bytes() > kMostBytes)) kept_.pop_back();
  }

  std::shared_ptr<Records> records_;
  std::list<Kept> kept_;  // the last one asked for first
};

}  // namespace ek::embedded

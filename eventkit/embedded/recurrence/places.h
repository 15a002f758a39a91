// The original places of a series' occurrences: where its start, rules and extra dates put them.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "eventkit/embedded/recurrence/expansion.h"
#include "eventkit/embedded/recurrence/series.h"

namespace ek::recurrence {

struct Place {
  WallTime wall{};
  const ExtraDate* extra = nullptr;  // when it is one of these
};

// Ascending, each once, without the excluded ones.
class Places {
 public:
  // From `from` to `last`. `zone` is the series' own, or what stands in for it. Both must outlive this.
  Places(const Series& series, const foundation::TimeZone& zone, WallTime from, WallTime last);

  std::optional<Place> next();

 private:
  // One rule's expansion, ended by COUNT and UNTIL.
  class Stream {
   public:
    Stream(const Series& series, const Rule& rule, std::optional<WallTime> lastStart,
           const foundation::TimeZone& zone, WallTime from, WallTime last);
    const std::optional<WallTime>& head() const { return head_; }
    void advance();

   private:
    Expansion expansion_;
    const foundation::TimeZone* zone_;
    std::optional<Date> until_;
    WallTime surelyWithin_{};
    std::optional<WallTime> head_;
  };

  std::optional<Place> nextCandidate();
  bool isExcluded(WallTime wall);

  const Series& series_;
  WallTime last_;
  std::optional<WallTime> start_;
  std::vector<Stream> rules_, exclusions_;
  std::size_t extra_ = 0, excludedDate_ = 0, excludedDay_ = 0;
};

}  // namespace ek::recurrence

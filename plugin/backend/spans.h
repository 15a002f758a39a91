// How much of a repeating event a change reaches.
#pragma once

#include <optional>

#include "eventkit/types.h"
#include "plugin/backend/keywords.h"

namespace zuno {

// There is no span of a whole series: "all" reaches as far as "future".
inline constexpr KeywordRow<ek::Span> kSpans[] = {
    {"this", ek::Span::thisEvent},
    {"future", ek::Span::futureEvents},
    {"all", ek::Span::futureEvents},
};

// Nothing for an absent or unknown word.
inline std::optional<ek::Span> spanFrom(TextArgument keyword) {
  const ek::Span* span = find(kSpans, Keyword(keyword));
  return span ? std::optional(*span) : std::nullopt;
}

}  // namespace zuno

#include "plugin/backend/ical_ek_functions.h"
#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

constexpr ek::Color gray(double white, double alpha = 1) {
  return {.red = white, .green = white, .blue = white, .alpha = alpha};
}

constexpr KeywordRow<ek::Color> kSystemColors[] = {
    {"black", gray(0)},
    {"blue", {.red = 0, .green = 0, .blue = 1}},
    {"brown", {.red = 0.6, .green = 0.4, .blue = 0.2}},
    {"clear", gray(0, 0)},
    {"cyan", {.red = 0, .green = 1, .blue = 1}},
    {"darkgray", gray(1.0 / 3)},
    {"gray", gray(0.5)},
    {"green", {.red = 0, .green = 1, .blue = 0}},
    {"lightgray", gray(2.0 / 3)},
    {"magenta", {.red = 1, .green = 0, .blue = 1}},
    {"orange", {.red = 1, .green = 0.5, .blue = 0}},
    {"purple", {.red = 0.5, .green = 0, .blue = 0.5}},
    {"red", {.red = 1, .green = 0, .blue = 0}},
    {"white", gray(1)},
    {"yellow", {.red = 1, .green = 1, .blue = 0}},
};

}  // namespace

std::optional<ek::Color> iCalEKFunctions::colorFromString(TextArgument name) {
  const ek::Color* color = find(kSystemColors, Keyword(name));
  return color ? std::optional(*color) : std::nullopt;
}

}  // namespace zuno

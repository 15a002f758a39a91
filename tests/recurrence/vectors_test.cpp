#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/recurrence/vocabulary.h"

namespace ek::recurrence {
namespace {

struct Vector {
  std::string name, start, zone, rule;
  std::vector<std::string> excepted, added, expected;
  bool isAll = false;
};

std::vector<Vector> readVectors(const std::filesystem::path& path) {
  std::vector<Vector> vectors;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key;
    if (!(words >> key)) continue;
    if (key == "#") {
      vectors.emplace_back().name = line.substr(2);
      continue;
    }
    if (vectors.empty()) continue;
    Vector& vector = vectors.back();
    std::string value;
    if (line.starts_with(' ')) {
      for (value = key; !value.empty(); value.clear(), words >> value) vector.expected.push_back(value);
    } else if (key == "start") {
      words >> vector.start >> vector.zone;
    } else if (key == "rule") {
      std::getline(words >> std::ws, vector.rule);
    } else if (key == "except") {
      vector.excepted.emplace_back(line.substr(7));
    } else if (key == "also") {
      vector.added.emplace_back(line.substr(5));
    } else {
      vector.isAll = line == "expect all";
    }
  }
  return vectors;
}

Series seriesFrom(const Vector& vector) {
  Series series = seriesOf(vector.start, vector.zone.empty() ? nullptr : vector.zone.c_str(), vector.rule);
  for (const std::string& date : vector.excepted) series.excludedDates.push_back(wall(date));
  for (const std::string& date : vector.added) series.extraDates.push_back({wall(date), {}});
  std::ranges::sort(series.excludedDates);
  std::ranges::sort(series.extraDates, {}, &ExtraDate::start);
  return series;
}

void check(const Vector& vector) {
  const Series series = seriesFrom(vector);
  const Date start = zoneOf(series).instantOf(series.start);
  const Date last = zoneOf(series).instantOf(wall(vector.expected.back()));
  const Date end = vector.isAll ? last + std::chrono::days(40 * 365) : last + std::chrono::seconds(1);
  EXPECT_THAT(startsIn(series, start, end), testing::ElementsAreArray(vector.expected));

  // Each of them is found by itself, from behind and without what came before.
  for (auto expected = vector.expected.rbegin(); expected != vector.expected.rend(); ++expected) {
    const Date at = zoneOf(series).instantOf(wall(*expected));
    EXPECT_THAT(startsIn(series, at, at), testing::Contains(*expected));
  }
}

std::vector<std::filesystem::path> dataFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(ZUNO_RECURRENCE_DATA))
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  // Another file in the same form, to try vectors that the project does not carry.
  if (const char* more = std::getenv("ZUNO_RECURRENCE_VECTORS")) files.emplace_back(more);
  std::ranges::sort(files);
  return files;
}

class Vectors : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Vectors, AreAnswered) {
  const std::vector<Vector> vectors = readVectors(GetParam());
  ASSERT_FALSE(vectors.empty());
  for (const Vector& vector : vectors) {
    SCOPED_TRACE(vector.name + ": " + vector.start + " " + vector.zone + " " + vector.rule);
    ASSERT_FALSE(vector.expected.empty());
    check(vector);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Vectors, testing::ValuesIn(dataFiles()), [](const auto& file) {
  std::string name = file.param.stem().string();
  std::ranges::replace_if(
      name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
});

}  // namespace
}  // namespace ek::recurrence

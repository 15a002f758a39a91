#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

#include "foundation/time_zone.h"
#include "foundation/zone_table.h"
#include "tests/foundation/scoped_variable.h"

namespace foundation {
namespace {

std::string bigEndian(std::uint64_t value, unsigned size) {
  std::string bytes;
  while (size-- > 0) bytes += static_cast<char>(value >> size * 8);
  return bytes;
}

std::string header(char version, std::uint32_t entries, std::uint32_t types, std::uint32_t letters,
                   std::uint32_t leaps = 0) {
  std::string bytes = "TZif";
  bytes += version;
  bytes.append(15, '\0');
  for (const std::uint32_t count : {0U, 0U, leaps, entries, types, letters}) bytes += bigEndian(count, 4);
  return bytes;
}

// Two types ("AAA" an hour east, "BBB" two), B from `first` on.
std::string body(unsigned timeSize, std::int64_t first, const std::string& leaps = {}) {
  return bigEndian(static_cast<std::uint64_t>(first), timeSize) + bigEndian(1, 1) + bigEndian(3600, 4) +
         bigEndian(0, 1) + bigEndian(0, 1) + bigEndian(7200, 4) + bigEndian(1, 1) + bigEndian(4, 1) +
         std::string("AAA\0BBB\0", 8) + leaps;
}

std::string version1() { return header('\0', 1, 2, 8) + body(4, 1'000'000); }

std::string version2(const std::string& rule) {
  return header('2', 1, 2, 8) + body(4, 1'000'000) + header('2', 1, 2, 8) + body(8, 2'000'000) + "\n" + rule +
         "\n";
}

TEST(ZoneFile, LaterVersionsHaveTheirTimesInTheSecondPart) {
  const auto first = readZoneFile(version1());
  ASSERT_TRUE(first);
  EXPECT_EQ(first->entries.at(0).at, 1'000'000);
  EXPECT_EQ(first->types.at(1), (ZoneTable::Type{7200, "BBB"}));
  EXPECT_EQ(first->rule, "");
  const auto second = readZoneFile(version2("AAA-1"));
  ASSERT_TRUE(second);
  EXPECT_EQ(second->entries.at(0).at, 2'000'000);
  EXPECT_EQ(second->rule, "AAA-1");
}

TEST(ZoneFile, LeapSecondsAreTakenOut) {
  const auto table =
      readZoneFile(header('\0', 1, 2, 8, 1) + body(4, 1'000'001, bigEndian(500'000, 4) + bigEndian(1, 4)));
  ASSERT_TRUE(table);
  EXPECT_EQ(table->entries.at(0).at, 1'000'000);
}

TEST(ZoneFile, RefusesBrokenFiles) {
  const std::string good = version2("AAA-1BBB,M3.5.0,M10.5.0");
  ASSERT_TRUE(readZoneFile(good));
  for (std::size_t length = 0; length < good.size(); ++length)
    EXPECT_FALSE(readZoneFile(good.substr(0, length))) << length;
  std::string wrongType = version1();
  wrongType[44 + 4] = 2;
  EXPECT_FALSE(readZoneFile(wrongType));
  std::string wrongLetters = version1();
  wrongLetters[44 + 4 + 1 + 5] = 8;
  EXPECT_FALSE(readZoneFile(wrongLetters));
  EXPECT_FALSE(readZoneFile(header('\0', 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF)));
  EXPECT_FALSE(readZoneFile(header('2', 0, 0, 0) + header('2', 0, 0, 0) + "\n\n"));
}

TEST(ZoneFile, DamagedBytesNeverDoWorseThanAnotherZone) {
  const std::string good = version2("AAA-1BBB,M3.5.0,M10.5.0");
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    std::string bytes = good;
    for (int change = 0; change < 3; ++change) bytes[random() % bytes.size()] = static_cast<char>(random());
    const auto table = readZoneFile(bytes);
    if (!table) continue;
    ASSERT_FALSE(table->types.empty());
    for (const ZoneTable::Entry& entry : table->entries) ASSERT_LT(entry.type, table->types.size());
    ASSERT_TRUE(std::ranges::is_sorted(table->entries, {}, &ZoneTable::Entry::at));
  }
}

class ZoneFolder : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::path(testing::TempDir()) / "zuno_zone_folder";
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ / "Area");
    write("Area/Good", version2("AAA-1BBB,M3.5.0,M10.5.0"));
    write("Area/Broken", version2("AAA-1").substr(0, 60));
    write("Outside", version1());
    variable_.set((folder_ / "Area").string());
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
  }

  std::filesystem::path folder_;
  ScopedVariable variable_{"TZDIR", std::nullopt};
};

TEST_F(ZoneFolder, ZonesAreReadFromThereAndFromNowhereElse) {
  const auto zone = TimeZone::named("Good");
  ASSERT_TRUE(zone);
  EXPECT_EQ(zone->letters(Date(std::chrono::seconds(1))), "AAA");
  EXPECT_EQ(TimeZone::named("Good"), zone);
  for (const char* name : {"", "Broken", "Missing", "../Outside", "./Good", "Good/", "/Good", ".", "..",
                           "Good\\..\\..", "Europe/Berlin"})
    EXPECT_EQ(TimeZone::named(name), nullptr) << name;
  EXPECT_EQ(TimeZone::named((folder_ / "Outside").string()), nullptr);
  EXPECT_TRUE(TimeZone::named("UTC"));
}

}  // namespace
}  // namespace foundation

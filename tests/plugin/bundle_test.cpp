#include "foundation/bundle.h"

#include <gtest/gtest.h>

namespace foundation {

namespace {

constexpr CompiledTable kTables[] = {
    {"Plain", R"(
/* A comment, "with" = "a string"; in it */
"key" = "value";
// Another "one" = "two";
"spaces"="none" ; "on" /* between */ = "the same line";
"escapes" = "\"quoted\"\\ \n\r\t\U00e9\U20AC\101\7z\q";
"café" = "naïve 🧪";
"lines" = "first
second";
"empty" = "";
"key" = "the last one counts";
)"},
    {"Broken", R"("before" = "kept"; "fault" = no quotes; "after" = "lost";)"},
    {"Unfinished", R"("before" = "kept"; "open" = "never closed)"},
    {"Nothing", "/* only a comment"}};

TEST(LocalizedString, ReadsATable) {
  const std::pair<const char*, std::u16string> strings[] = {
      {"key", u"the last one counts"},
      {"spaces", u"none"},
      {"on", u"the same line"},
      {"escapes", u"\"quoted\"\\ \n\r\t\u00e9\u20ACA\azq"},
      {"caf\u00e9", u"na\u00efve \U0001F9EA"},
      {"lines", u"first\nsecond"},
      {"empty", u""}};
  for (const auto& [key, string] : strings) EXPECT_EQ(localizedString(0, key, "Plain"), string) << key;
}

TEST(LocalizedString, MissingKeysAndTablesGiveNothing) {
  EXPECT_EQ(localizedString(0, "value", "Plain"), std::nullopt);
  EXPECT_EQ(localizedString(0, "with", "Plain"), std::nullopt);
  EXPECT_EQ(localizedString(0, "one", "Plain"), std::nullopt);
  EXPECT_EQ(localizedString(0, "key", "plain"), std::nullopt);
  EXPECT_EQ(localizedString(0, "any", "Nothing"), std::nullopt);
}

TEST(LocalizedString, WhatFollowsAFaultIsNotRead) {
  EXPECT_EQ(localizedString(0, "before", "Broken"), u"kept");
  EXPECT_EQ(localizedString(0, "after", "Broken"), std::nullopt);
  EXPECT_EQ(localizedString(0, "before", "Unfinished"), u"kept");
  EXPECT_EQ(localizedString(0, "open", "Unfinished"), std::nullopt);
}

}  // namespace

std::span<const CompiledTable> compiledTables() { return kTables; }

}  // namespace foundation

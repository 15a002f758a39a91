#include <gtest/gtest.h>

#include "plugin/shell/error_catalogue.h"
#include "plugin/shell/globals.h"
#include "plugin/shell/plugin_error.h"

namespace zuno {
namespace {

TEST(PluginError, TellsClearedFromRecordedSuccess) {
  zuno_PluginError error;
  EXPECT_EQ(error.getError(), "Success");
  EXPECT_EQ(error.getErrorNumber(), "0");
  error.setError(0, 0, std::nullopt);
  EXPECT_EQ(error.getError(), "SUCCESS");
  error.clearError();
  EXPECT_EQ(error.getError(), "Success");
}

TEST(PluginError, AnExtraTextLastsForOneError) {
  zuno_PluginError error;
  error.setError(9034, 5, "It was moved.");
  EXPECT_EQ(error.getError(), "Event was not found. It was moved.");
  EXPECT_EQ(error.getErrorNumber(), "9034");
  error.setError(9035, 0, std::nullopt);
  EXPECT_EQ(error.getError(), "Reminder was not found.");
  error.setError(-4, 0, "");
  EXPECT_EQ(error.getError(), "Invalid Parameter value(s) ");
}

// Around the edges of both dense tables, and what scripts compare with letter by letter.
TEST(ErrorCatalogue, HoldsItsTexts) {
  const std::pair<int, std::string_view> texts[] = {
      {0, "SUCCESS"},
      {-3, "Invalid Number of Parameters"},
      {-4, "Invalid Parameter value(s)"},
      {-998, "Unknown Exception"},
      {-999, "COM Exception"},
      {9000, "Invalid call order. Must access other item prior to call."},
      {9009, "Unable to create item."},
      {9012, "Unable to create item."},
      {9021, "Invalid recurrence type. Must be 'Daily','Weekly','Monthly' or 'Yearly'"},
      {9069,
       "Invalid Recurrence Rule End property specified in parameter. Valid sub properties are 'usesEndDate' "
       ", 'occurenceCount' , or 'endDate'."},
      {9077, "An Event Predicate has not been created. Get an Event Predicate before opening an event."},
      {9079, "Unable to delete event."}};
  for (const auto& [number, text] : texts) EXPECT_EQ(errorMessage(number), text) << number;
  for (const int number : {1, -1, -2, -5, -9, -10, -11, -299, 8999, 9080, 9999, 2147483647, -2147483647 - 1})
    EXPECT_EQ(errorMessage(number), "Undefined Error.") << number;
}

TEST(ClearError, ForgetsNumberAndMessage) {
  error = std::make_unique<zuno_PluginError>();
  error->setError(9034, 0, std::nullopt);
  g_llasterror = 9034;
  ClearError();
  EXPECT_EQ(g_llasterror, 0);
  EXPECT_EQ(error->getError(), "Success");
  error.reset();
  g_llasterror = 9034;
  ClearError();
  EXPECT_EQ(g_llasterror, 0);
}

}  // namespace
}  // namespace zuno

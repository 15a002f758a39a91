// The built program, run on a store of the test's own.
#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "tests/storage/process.h"
#include "tests/storage/temporary_folder.h"

namespace zuno_test {

class Zunocal : public testing::Test {
 protected:
  std::vector<std::string> command(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {ZUNO_ZUNOCAL, "--store", store_};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
  }
  Outcome zunocal(const std::vector<std::string>& arguments) const { return run(command(arguments)); }

  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_.file(name), std::ios::binary) << text;
    return folder_.file(name);
  }
  static std::string read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  static std::string calendar(const std::string& title, int events, int firstDay = 1) {
    std::string text =
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//t//t//EN\r\nX-WR-CALNAME:" + title + "\r\n";
    for (int i = 0; i < events; ++i)
      text += "BEGIN:VEVENT\r\nUID:" + title + "-" + std::to_string(i) + "\r\nDTSTART:202405" +
              std::to_string(10 + (firstDay + i) % 20) + "T090000Z\r\nSUMMARY:Event\r\nEND:VEVENT\r\n";
    return text + "END:VCALENDAR\r\n";
  }

  TemporaryFolder folder_;
  std::string store_ = folder_.file("store.sqlite");
};

}  // namespace zuno_test

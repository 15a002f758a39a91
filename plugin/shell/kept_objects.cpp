#include "plugin/shell/kept_objects.h"

#include <memory>

#include "plugin/shell/sessions.h"

namespace zuno {

namespace {

constexpr std::size_t kLongText = 4096;

struct KeptObjects {
  std::unique_ptr<fmx::Text> text;
  bool isTextLong = false;
  std::unique_ptr<fmx::FixPt> number;
  std::unique_ptr<fmx::DateTime> dateTime;
};

// Never destroyed: a host that ends without a word to its plug-ins has no use for its objects any more.
KeptObjects& kept() {
  static KeptObjects& objects = *new KeptObjects;
  return objects;
}

}  // namespace

fmx::Text& textForResult(std::size_t units) {
  KeptObjects& objects = kept();
  const bool isLong = units > kLongText;
  if (!objects.text || (objects.isTextLong && !isLong)) objects.text = fmx::TextUniquePtr();
  objects.isTextLong = isLong;
  return *objects.text;
}

fmx::FixPt& numberForResult() {
  KeptObjects& objects = kept();
  if (!objects.number) objects.number = fmx::FixPtUniquePtr(0);
  return *objects.number;
}

fmx::DateTime& dateTimeForResult() {
  KeptObjects& objects = kept();
  if (!objects.dateTime) objects.dateTime = fmx::DateTimeUniquePtr();
  return *objects.dateTime;
}

void releaseKeptObjects() {
  const SessionLock lock;
  kept() = {};
}

}  // namespace zuno

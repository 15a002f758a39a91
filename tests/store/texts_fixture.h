// A store fixture for items that are given, and seen, as the text that the store keeps.
#pragma once

#include <stdexcept>

#include "tests/store/store_fixture.h"

namespace zuno_test {

class Texts : public StoreFixture {
 protected:
  std::shared_ptr<ek::Event> imported(const std::string& text, const std::string& uid) {
    import(text);
    auto event = store_->eventWithIdentifier(uid);
    if (!event) throw std::runtime_error("not found: " + uid);
    return event;
  }
  std::string textAfterSave(const std::shared_ptr<ek::Event>& event, ek::Span span = ek::Span::thisEvent) {
    save(event, span);
    return textOf(event->calendarItemIdentifier());
  }
};

}  // namespace zuno_test

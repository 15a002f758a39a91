// How the bridge's objects hold EventKit's, and how they are found again behind the store's interface.
#pragma once

#import <EventKit/EventKit.h>
#include <memory>
#include <string>
#include <utility>

#include "eventkit/macos/ref.h"
#include "eventkit/types.h"

namespace ek::macos {

// Keeps the store alive with the object: EventKit's own objects do not.
template <class Object>
class Native {
 public:
  Native(Ref<EKEventStore> store, Ref<Object> object)
      : store_(std::move(store)), object_(std::move(object)) {}
  virtual ~Native() = default;

  const Ref<EKEventStore>& store() const { return store_; }
  Object* object() const { return object_.get(); }

 private:
  Ref<EKEventStore> store_;
  Ref<Object> object_;
};

// EventKit's object behind `item`. Throws for null, for another implementation's object and for an object
// of another store, which EventKit would raise for or corrupt itself over, depending on the call.
template <class Object, class Item>
Object* nativeOf(const std::shared_ptr<Item>& item, EKEventStore* store) {
  if (!item) throwException("no object was given");
  const auto* native = dynamic_cast<const Native<Object>*>(item.get());
  if (native == nullptr || native->store().get() != store)
    throwException("the object belongs to another calendar store");
  return native->object();
}

}  // namespace ek::macos

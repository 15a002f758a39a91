// An owning reference to an Objective-C object (manual retain and release: the bridge also builds where the
// runtime has no reference counting of its own).
#pragma once

#import <Foundation/Foundation.h>
#include <utility>

namespace ek::macos {

template <class T>
class Ref {
 public:
  Ref() = default;
  explicit Ref(T* object) : object_([object retain]) {}
  // For the results of alloc and copy, which come retained.
  static Ref adopt(T* object) {
    Ref ref;
    ref.object_ = object;
    return ref;
  }
  Ref(const Ref& other) : object_([other.object_ retain]) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() { [object_ release]; }

  T* get() const { return object_; }
  explicit operator bool() const { return object_ != nil; }

 private:
  T* object_ = nil;
};

}  // namespace ek::macos

// Counts what may have changed a store's answers: the bridge's own saves, and what EventKit reports of
// others.
#pragma once

#import <EventKit/EventKit.h>
#include <atomic>
#include <memory>

#include "eventkit/macos/ref.h"

namespace ek::macos {

class Changes {
 public:
  // How far they had come when a query was asked; may outlive the store.
  class Moment {
   public:
    bool isNow() const { return count_->load() == seen_; }

   private:
    friend class Changes;
    explicit Moment(std::shared_ptr<const std::atomic<unsigned>> count)
        : count_(std::move(count)), seen_(count_->load()) {}
    std::shared_ptr<const std::atomic<unsigned>> count_;
    unsigned seen_;
  };

  explicit Changes(EKEventStore* store);
  ~Changes();
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;

  void note() { count_->fetch_add(1); }
  Moment now() const { return Moment(count_); }

 private:
  // Shared with the observer, which the system calls on threads of its own.
  std::shared_ptr<std::atomic<unsigned>> count_ = std::make_shared<std::atomic<unsigned>>(0);
  Ref<NSObject> observer_;
};

}  // namespace ek::macos

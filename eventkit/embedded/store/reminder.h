#pragma once

#include <memory>
#include <optional>
#include <string>

#include "eventkit/embedded/store/stored_item.h"

namespace ek::embedded {

struct Completion {
  bool isCompleted = false;
  std::optional<Date> date;  // may be missing where another program completed it
  bool operator==(const Completion&) const = default;
};

class EmbeddedReminder final : public StoredItem<Reminder> {
 public:
  explicit EmbeddedReminder(std::shared_ptr<Records> records)
      : StoredItem(std::move(records), EntityType::reminder) {}
  EmbeddedReminder(std::shared_ptr<Records> records, std::shared_ptr<const Document> document)
      : StoredItem(std::move(records), std::move(document), std::nullopt) {}

  std::optional<DateComponents> dueDateComponents() const override;
  void setDueDateComponents(std::optional<DateComponents> due) override;
  bool isCompleted() const override { return completion().isCompleted; }
  void setCompleted(bool completed) override;
  std::optional<Date> completionDate() const override { return completion().date; }
  void setCompletionDate(std::optional<Date> date) override;
  int priority() const override { return priority_.current(fields().priority); }
  void setPriority(int priority) override { priority_.set(priority, fields().priority); }
  std::optional<std::string> timeZoneAbbreviation() const override;

  Completion completion() const { return completion_.current(storedCompletion()); }
  bool isCompletionChanged() const { return completion_.isChanged(); }
  bool isDueChanged() const { return due_.isChanged(); }
  bool isPriorityChanged() const { return priority_.isChanged(); }
  bool isChanged() const override;
  void becomeStored(std::shared_ptr<const Document> document);

 private:
  struct Due {
    std::optional<DateComponents> components;
    bool operator==(const Due& other) const;
  };
  Due storedDue() const;
  Completion storedCompletion() const { return {fields().isCompleted, fields().completion}; }

  Editable<Due> due_;
  Editable<Completion> completion_;
  Editable<int> priority_;
};

}  // namespace ek::embedded

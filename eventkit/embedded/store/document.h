// An item's row as it was read: a snapshot. Its text is parsed when something in it is first asked for, and
// the parsed form is kept.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/embedded/storage/item_table.h"
#include "eventkit/embedded/store/fields.h"
#include "eventkit/embedded/store/series_places.h"

namespace ek::embedded {

class Document {
 public:
  Document(ItemRow row, std::shared_ptr<ItemTable> items);

  const ItemRow& row() const { return row_; }
  // The item with all its components, as far as queries see it.
  const std::vector<ical::Component>& components() const;
  const ZoneFinder& zones() const { return zones_; }

  // Index of the component that says what the item is as a whole, or, with a place in the series, of the
  // component that stands for that occurrence: its own if it has one, else the whole item's.
  std::size_t componentFor(std::optional<WallTime> recurrenceId) const;
  const Fields& fields(std::size_t component) const;

  // About how much memory it takes. More once it is parsed.
  std::size_t bytes() const;

 private:
  ItemRow row_;
  std::shared_ptr<ItemTable> items_;  // that zones_ asks
  ZoneFinder zones_;
  mutable std::optional<std::vector<ical::Component>> components_;
  mutable std::vector<std::unique_ptr<const Fields>> fields_;  // beside components_
};

}  // namespace ek::embedded

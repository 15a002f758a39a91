#include "eventkit/embedded/store/document.h"

#include <algorithm>
#include <utility>

namespace ek::embedded {

namespace {

// Measured on calendars of usual items: the parsed text with its fields takes as much as so many texts.
constexpr std::size_t kParsedTexts = 7;
// Of the document, its node in a cache, and the strings beside the text.
constexpr std::size_t kBytesBesideText = 500;

}  // namespace

Document::Document(ItemRow row, std::shared_ptr<ItemTable> items)
    : row_(std::move(row)), items_(std::move(items)), zones_(items_->zoneFinder(row_)) {}

const std::vector<ical::Component>& Document::components() const {
  if (!components_) {
    components_ = ical::parseComponents(row_.text);
    if (components_->empty()) throw Exception("the store is damaged: an item has no readable text");
    fields_.resize(components_->size());
  }
  return *components_;
}

std::size_t Document::componentFor(std::optional<WallTime> recurrenceId) const {
  const auto& all = components();
  if (recurrenceId) {
    const SeriesPlaces places(all, zones_);
    const auto own = std::ranges::find_if(
        all, [&](const ical::Component& component) { return places.of(component) == recurrenceId; });
    if (own != all.end()) return static_cast<std::size_t>(own - all.begin());
  }
  return masterOf(all);
}

const Fields& Document::fields(std::size_t component) const {
  const ical::Component& read = components()[component];
  auto& kept = fields_[component];
  if (!kept) {
    Fields fields = readFields(read, zones_);
    if (!fields.created) fields.created = row_.stored;
    if (!fields.lastModified) fields.lastModified = row_.stored;
    kept = std::make_unique<const Fields>(std::move(fields));
  }
  return *kept;
}

std::size_t Document::bytes() const {
  return kBytesBesideText + row_.text.size() * (components_ ? 1 + kParsedTexts : 1);
}

}  // namespace ek::embedded

// The components of one UID, read from a file: which of them make the item, and what the item's text is.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/storage/import_plan.h"
#include "eventkit/embedded/storage/item_index.h"

namespace ek::embedded {

struct ReadItem {
  ItemIndex index;
  std::string text;
  std::vector<const ImportPlan::Source*> sources;  // of the components in the text, in its order
};

// Nothing when none of the group can be read. `leaveOut` is told each component that is no part of the item,
// and why; `remark` what else went wrong.
std::optional<ReadItem> readItem(
    const ImportPlan& plan, const ImportPlan::Group& group, const ZoneFinder& zones,
    const std::function<void(const ImportPlan::Source&, const std::string& reason)>& leaveOut,
    const std::function<void(const ImportPlan::Source&, const std::string& reason)>& remark);

}  // namespace ek::embedded

#include "eventkit/embedded/store/address_book.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include "eventkit/embedded/storage/database.h"
#include "foundation/text.h"

namespace ek::embedded {

std::optional<std::string> EmbeddedAddressBook::addressOf(const Participant& participant) {
  const auto email = std::static_pointer_cast<const std::string>(participant.native);
  if (!email || email->empty()) return std::nullopt;
  return guarded([&]() -> std::optional<std::string> {
    const auto database = Database::shared(path_);
    if (!database) return std::nullopt;
    const auto select = database->statement(
        "SELECT c.address FROM contact_email e JOIN contact c ON c.id = e.contact"
        " WHERE e.email = ?1 AND c.address <> '' ORDER BY c.id LIMIT 1");
    select->bind(1, foundation::lowercased(*email));
    if (!select->executeStep()) return std::nullopt;
    return select->getColumn(0).getString();
  });
}

}  // namespace ek::embedded

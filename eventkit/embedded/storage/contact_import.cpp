#include "eventkit/embedded/storage/contact_import.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <vector>

#include "eventkit/embedded/ical/vcard.h"
#include "eventkit/embedded/storage/import_text.h"

namespace ek::embedded {
namespace {

bool isKnown(Database& database, const ical::Contact& contact) {
  const auto select = database.statement("SELECT 1 FROM contact WHERE text = ?");
  select->bindNoCopy(1, contact.text);
  return select->executeStep();
}

void insertContact(Database& database, const ical::Contact& contact) {
  const std::string uid = uidIn(contact.text);
  const auto insert =
      database.statement("INSERT OR REPLACE INTO contact (uid, name, address, text) VALUES (?, ?, ?, ?)");
  if (!uid.empty()) insert->bindNoCopy(1, uid);
  insert->bindNoCopy(2, contact.name);
  insert->bindNoCopy(3, contact.address);
  insert->bindNoCopy(4, contact.text);
  insert->exec();
  const RowId id = database.lastInsertedRow();
  for (const std::string& email : contact.emails) {
    const auto link = database.statement("INSERT INTO contact_email VALUES (?, ?)");
    link->bindNoCopy(1, email);
    link->bind(2, id);
    link->exec();
  }
}

}  // namespace

std::size_t importContacts(Database& database, std::string_view text,
                           const std::function<void(std::size_t line, std::string reason)>& skip) {
  std::vector<ical::Problem> problems;
  const std::vector<ical::Contact> contacts = ical::parseContacts(text, problems);
  for (ical::Problem& problem : problems) skip(problem.line, std::move(problem.reason));
  if (contacts.empty() && problems.empty()) skip(1, "there is no contact in this file");
  for (const ical::Contact& contact : contacts)
    if (!isKnown(database, contact)) insertContact(database, contact);
  return contacts.size();
}

}  // namespace ek::embedded

#include "eventkit/embedded/ical/vcard.h"

#include <gmock/gmock.h>

namespace ek::ical {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Contact contact(std::string_view lines) {
  std::vector<Problem> problems;
  const std::vector<Contact> contacts =
      parseContacts("BEGIN:VCARD\r\n" + std::string(lines) + "\r\nEND:VCARD\r\n", problems);
  EXPECT_THAT(problems, IsEmpty());
  EXPECT_EQ(contacts.size(), 1U);
  return contacts.empty() ? Contact() : contacts.front();
}

TEST(Contacts, HaveNameAndAddresses) {
  const Contact jane = contact(
      "VERSION:4.0\r\nN:Doe;Jane;;Dr.;\r\nFN:Jane Doe\r\n"
      "EMAIL;TYPE=work:Jane.Doe@Example.COM\r\nitem1.EMAIL:mailto:JD@example.org\r\nEMAIL:\r\n"
      "ADR;TYPE=home:;;5 Main St.;Springfield;IL;62701;USA");
  EXPECT_EQ(jane.name, "Jane Doe");
  EXPECT_THAT(jane.emails, ElementsAre("jane.doe@example.com", "jd@example.org"));
  EXPECT_EQ(jane.address, "5 Main St., Springfield, IL, 62701, USA");
  EXPECT_EQ(contact("N:Doe;Jane;M.;Dr.;MD").name, "Dr. Jane M. Doe MD");
  EXPECT_EQ(contact("N:Doe").name, "Doe");
}

TEST(Contacts, AddressIsOneLineOfWhatThereIs) {
  const struct {
    std::string_view why, lines, address;
  } cases[] = {
      {"none", "FN:x", ""},
      {"empty", "ADR:;;;;;;", ""},
      {"parts left out", "ADR:;;;Paris;;;France", "Paris, France"},
      {"fewer parts than there are", "ADR:;;Street 1;Town", "Street 1, Town"},
      {"escaped", "ADR:;;Street 1\\, Flat 2\\; back;Town;;;", "Street 1, Flat 2; back, Town"},
      {"lines", "ADR:;;Street 1\\nFlat 2\\n;Town;;;", "Street 1, Flat 2, Town"},
      {"folded", "ADR:;;Str\r\n eet 1;To\r\n\twn;;;", "Street 1, Town"},
      {"the first of several", "ADR:;;A;;;;\r\nADR:;;B;;;;", "A"},
      {"the preferred one, 3.0", "ADR:;;A;;;;\r\nitem2.ADR;type=HOME;type=pref:;;B;;;;", "B"},
      {"the preferred one, list", "ADR:;;A;;;;\r\nADR;TYPE=\"home,pref\":;;B;;;;", "B"},
      {"the preferred one, 4.0", "ADR;PREF=2:;;A;;;;\r\nADR;PREF=1:;;B;;;;\r\nADR;PREF=1:;;C;;;;", "B"},
      {"the preferred one, 2.1", "ADR;HOME:;;A;;;;\r\nADR;WORK;PREF:;;B;;;;", "B"},
      {"not an empty one", "ADR;PREF=1:;;;;;;\r\nADR:;;A;;;;", "A"},
      {"quoted-printable",
       "ADR;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:;;Hauptstra=C3=9Fe 5=3B hinten;K=C3=\r\n=B6ln;;;",
       "Hauptstra\xC3\x9F"
       "e 5; hinten, K\xC3\xB6ln"},
      {"bare quoted-printable, Latin-1",
       "ADR;WORK;QUOTED-PRINTABLE;CHARSET=ISO-8859-1:;;Stra=DFe=0D=0AHaus;K=F6ln;;;",
       "Stra\xC3\x9F"
       "e, Haus, K\xC3\xB6ln"},
      {"an equals sign that is meant", "ADR;LABEL=\"x=y\":;;1=2;;;;", "1=2"},
  };
  for (const auto& [why, lines, address] : cases) EXPECT_EQ(contact(lines).address, address) << why;
}

TEST(Contacts, AreFoundWhereverTheyStand) {
  std::vector<Problem> problems;
  const std::string first = "BEGIN:VCARD\nFN:A\nEND:VCARD\n", second = "begin:vcard\nFN:B\nend:vcard\n";
  const auto contacts = parseContacts("\xEF\xBB\xBF" + first + "\n\n" + second, problems);
  ASSERT_EQ(contacts.size(), 2U);
  EXPECT_EQ(contacts[0].text, first);
  EXPECT_EQ(contacts[1].text, second);
  EXPECT_EQ(contacts[1].name, "B");
  EXPECT_THAT(problems, IsEmpty());
  EXPECT_EQ(
      contact("FN:Boss\r\nAGENT:\r\nBEGIN:VCARD\r\nFN:Agent\r\nEMAIL:a@x\r\nEND:VCARD\r\nEMAIL:b@x").emails,
      std::vector<std::string>{"b@x"});
}

TEST(Contacts, ReportWhatIsNoCard) {
  const struct {
    std::string_view why, text;
    std::vector<std::string> names;
    std::vector<std::size_t> problemLines;
  } cases[] = {
      {"something else", "BEGIN:VCALENDAR\nX:1\nEND:VCALENDAR\n", {}, {1}},
      {"between cards",
       "BEGIN:VCARD\nFN:A\nEND:VCARD\nx\ny\nBEGIN:VCARD\nFN:B\nEND:VCARD\nz\n",
       {"A", "B"},
       {4, 9}},
      {"no END before the next", "BEGIN:VCARD\nFN:A\nBEGIN:VCARD\nFN:B\nEND:VCARD\n", {"A", "B"}, {1}},
      {"cut off", "BEGIN:VCARD\nFN:A", {"A"}, {}},
      {"quoted-printable cut off", "BEGIN:VCARD\nFN;ENCODING=QUOTED-PRINTABLE:A=", {"A"}, {}},
      {"empty", "", {}, {}},
  };
  for (const auto& [why, text, names, problemLines] : cases) {
    SCOPED_TRACE(why);
    std::vector<Problem> problems;
    std::vector<std::string> found;
    for (const Contact& one : parseContacts(text, problems)) found.push_back(one.name);
    EXPECT_EQ(found, names);
    std::vector<std::size_t> lines;
    for (const Problem& problem : problems) lines.push_back(problem.line);
    EXPECT_EQ(lines, problemLines);
  }
}

}  // namespace
}  // namespace ek::ical

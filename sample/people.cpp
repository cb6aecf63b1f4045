#include "sample/people.h"

#include <QStringList>

namespace orvandel {

namespace {

struct Row {
  const char *first, *last, *company, *phone, *email, *address, *url;
};

// Numbers are from ranges reserved for fiction. A missing value is nullptr.
const Row kSpecial[] = {
    {"Anna", "Berger", nullptr, "+493023125001\n+4917139200011", "anna.berger@example.org",
     "Lindenallee 4\n12345 Musterstadt\nDeutschland", "https://anna.example.org"},
    {"Jürgen", "Großmann", "Bäckerei Großmann", "+493023125002", "juergen@example.org\nbrot@example.com",
     "Königstraße 17\n70173 Stuttgart", "http://example.com/brot"},
    {"Zoë", "O'Neill", nullptr, "+447700900123", "zoe@example.net", "12 Harbour Row\nGalway", nullptr},
    {"伟", "王", "示例科技", "+8613800138000", "wang@example.cn", "北京市朝阳区示例路 8 号", nullptr},
    {"花子", "山田", nullptr, "+81352530001", nullptr, "東京都千代田区 1-2-3", nullptr},
    {"Mira", "Sand", nullptr, "+493023125010", nullptr, nullptr, nullptr},
    {"mira", "sand", nullptr, "+493023125011", nullptr, nullptr, nullptr},
    {nullptr, nullptr, "Pizza Vesuvio", "+493023125020", "ciao@example.com", "Marktplatz 1\n10115 Berlin",
     "https://vesuvio.example.com/menu?lang=de&size=xl"},
    {nullptr, nullptr, nullptr, "+493023125021", nullptr, nullptr, nullptr},
    {"Ohne", "Nummer", nullptr, nullptr, "ohne@example.org", nullptr, nullptr},
    {"Mail", "Only", "Example & Sons", nullptr, "mail.only@example.com", "1 <Main> Street", nullptr},
    {"Prince", nullptr, nullptr, "+12025550107", nullptr, nullptr, nullptr},
    {nullptr, "Nachname", nullptr, "+493023125022", nullptr, nullptr, nullptr},
    {"Dr. Karl-Heinz", "von und zu Hohenstein-Lichtenfels", "Kanzlei Hohenstein, Lichtenfels & Partner mbB",
     "+493023125030\n+493023125031\n+4917139200030",
     "kh@example.org\nkanzlei@example.org\nprivat@example.net",
     "Schlossweg 1\n95463 Bindlach\n\nZweitwohnung:\nHafenstraße 99\n20459 Hamburg",
     "https://kanzlei.example.org"},
    {"Taxi", "\"Schnell\"", nullptr, "+4930901820555", nullptr, nullptr, nullptr},
    {"ליאת", "כהן", nullptr, "+97235550112", "liat@example.org", nullptr, nullptr},
    {"Дмитрий", "Соколов", nullptr, "+74955550133", nullptr, "ул. Примерная, 5\nМосква", nullptr},
    {"Mum 💛", nullptr, nullptr, "+4917139200001", "mum@example.org", nullptr, nullptr},
};

const char* const kFirst[] = {"Lena",  "Paul",  "Sofía", "Émile", "Øystein", "Noor",  "Ivo",    "Greta",
                              "Tomás", "Björk", "Aylin", "Ravi",  "Chloé",   "Oskar", "Ilse",   "Matteo",
                              "Jana",  "Luca",  "Agnès", "Søren", "Wiebke",  "Ben",   "Ximena", "Henrik"};
const char* const kLast[] = {"Ahrens",  "Núñez",   "Keller",   "Lindqvist", "Dvořák",   "Özdemir",
                             "Fischer", "Moreau",  "Bianchi",  "Hansen",    "Patel",    "Schäfer",
                             "Brandt",  "Weiß",    "Kowalski", "Dupré",     "Sørensen", "Novák",
                             "Vogel",   "Almeida", "Köhler",   "Reyes",     "Thorne"};
const char* const kCompanies[] = {"Nordlicht Optik", "Café Éclair", "Blue Fern Studio", "Harbour & Co.",
                                  "Müller GmbH"};
const char* const kStreets[] = {"Gartenweg", "Rue des Lilas", "Station Road", "Ahornstraße", "Calle Mayor"};
const char* const kTowns[] = {"04103 Leipzig", "69002 Lyon", "Bristol BS1", "8001 Zürich", "28013 Madrid"};

QString text(const char* value) {
  return value ? QString::fromUtf8(value) : QString();
}

ContactsStore::Person ordinary(int number, SeededRandom& random) {
  ContactsStore::Person person;
  person.first = text(random.pick(kFirst));
  person.last = text(random.pick(kLast));
  if (random.chance(25)) person.company = text(random.pick(kCompanies));
  // The running number makes each one unique.
  person.phone = QString("+4917%1").arg(10000000 + qint64{number} * 7919 % 89999999);
  if (random.chance(35)) person.phone += QString("\n+4930%1").arg(random.between(1000000, 9999999));
  if (random.chance(60))
    person.email = QString("person%1@example.%2").arg(number).arg(random.chance(50) ? "org" : "com");
  if (random.chance(10))
    person.email += QString("%1work%2@example.net").arg(person.email.isEmpty() ? "" : "\n").arg(number);
  if (random.chance(50)) {
    person.address = QString("%1 %2\n%3")
                         .arg(text(random.pick(kStreets)))
                         .arg(random.between(1, 140))
                         .arg(text(random.pick(kTowns)));
  }
  if (random.chance(15)) person.url = QString("https://person%1.example.org/").arg(number);
  return person;
}

}  // namespace

std::vector<ContactsStore::Person> samplePeople(int count, SeededRandom& random) {
  std::vector<ContactsStore::Person> people;
  for (int i = 0; i < count; ++i) {
    if (i >= static_cast<int>(std::size(kSpecial))) {
      people.push_back(ordinary(i, random));
      continue;
    }
    const Row& row = kSpecial[i];
    people.push_back({text(row.first), text(row.last), text(row.company), text(row.phone), text(row.email),
                      text(row.address), text(row.url)});
  }
  return people;
}

QString firstPhone(const ContactsStore::Person& person) {
  return person.phone.isEmpty() ? QString() : person.phone.section('\n', 0, 0);
}

}  // namespace orvandel

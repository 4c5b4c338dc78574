#include "tests/support/data_set.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "store/store_data.h"

namespace quillary::test {
namespace {

using Words = std::vector<std::string_view>;

const Words Salutations{"Mr.", "Ms.", "Dr.", "", "Mme", "Prof."};
const Words FirstNames{"Ann",     "Bjørn",  "Chiara", "Dmitri",   "Elżbieta", "François", "Γιώργος",
                       "Hannah",  "Ιωάννα", "José",   "Kateřina", "美玲",     "Søren",    "דוד",
                       "Umberto", "Zoë",    "Łukasz", "Maria",    "Oliver",   "Priya"};
const Words LastNames{
    "Andersson", "Brandt",  "Čapek",        "de la Cruz",   "Eriksen",  "Ferreira",  "García",
    "Hoffmann",  "Ibrahim", "Jansen",       "Κωνσταντίνου", "כהן",      "Lindqvist", "Müller",
    "Novák",     "O'Brien", "Παπαδόπουλος", "王",           "Quintero", "Rasmussen", "SANDERS",
    "Тарасенко", "Ueda",    "van Dijk",     "Wójcik",       "Yamamoto", "Zimmermann"};
const Words Titles{"Accountant", "Buyer", "Director of Sales", "Engineer", "Head of Purchasing",
                   "",           "Owner"};
const Words Companies{"Adria Shipping",    "Borealis Paper", "Cobalt Instruments", "Delta Bakery",
                      "Équipement Moreau", "Fjord & Sons",   "Γραφεία Αθηνών",     "Harbour Tools",
                      "Ibis Travel",       "Juniper Press"};
const Words Streets{"Birch Lane", "Canal Street",  "Drottninggatan",
                    "Eichenweg",  "Rue du Marché", "Stationsplein"};
const Words Cities{"Bergen", "Córdoba", "Düsseldorf", "Gdańsk", "Lyon", "Rotterdam", "Θεσσαλονίκη"};
const Words Notes{"Met at the spring fair; wants the new price list before the summer.",
                  "Call in the morning only.", "", "Pays late. Send a reminder = always."};

constexpr std::array<std::string_view, 6> LinkKeys{"PrevName",    "NextName", "PrevCompany",
                                                   "NextCompany", "PrevDel",  "NextDel"};

struct Invented {
  FieldArray Fields;
  std::string ShowName;
  std::string ShowCompany;
  std::array<std::string, LinkKeys.size()> Links;
};

class Inventor {
 public:
  Invented Make() {
    Invented record;
    auto& fields = record.Fields;
    const bool isPerson = Below(20) > 0;
    if (isPerson) {
      fields[0] = Pick(Salutations);
      fields[1] = Pick(FirstNames);
      fields[2] = Pick(LastNames);
      // A second name makes most of the names differ.
      if (Below(3) > 0) fields[2] += '-' + std::string(Pick(LastNames));
    }
    fields[3] = Pick(Titles);
    if (!isPerson || Below(3) > 0) {
      fields[4] = std::string(Pick(Companies)) + ' ' + std::to_string(Below(400));
    }
    fields[5] = std::to_string(1 + Below(240)) + ' ' + std::string(Pick(Streets));
    fields[6] = Below(4) == 0 ? "Building " + std::to_string(Below(30)) : "";
    fields[7] = Pick(Cities);
    fields[9] = std::to_string(10000 + Below(89999));
    fields[10] = Below(2) == 0 ? "Northern District" : "";
    fields[11] = Phone();
    fields[12] = Below(2) == 0 ? Phone() : "";
    fields[13] = Below(3) == 0 ? Phone() : "";
    fields[14] = "contact" + std::to_string(Below(100000)) + "@mail.example";
    fields[15] = Pick(Notes);
    const std::string company = "( " + fields[4] + " )";
    const std::string person = fields[2] + ", " + fields[1];
    record.ShowName = isPerson ? person : company;
    record.ShowCompany = fields[4].empty() ? person : company;
    return record;
  }

 private:
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
  std::string_view Pick(const Words& words) {
    return words[static_cast<std::size_t>(Below(static_cast<int>(words.size())))];
  }
  std::string Phone() {
    return "+" + std::to_string(30 + Below(60)) + " (0)" + std::to_string(10 + Below(90)) + " " +
           std::to_string(1000000 + Below(8999999));
  }

  std::mt19937 engine_{20};
};

void Put(std::string& bytes, std::string_view key, std::string_view value) {
  bytes.append(key).append("=").append(value).append("\r\n");
}

// Links the records in the order given; `link`: the index of the backward link's key. Returns the
// number of the first.
std::string Chain(std::vector<Invented>& records, const std::vector<std::size_t>& order,
                  std::size_t link) {
  for (std::size_t i = 1; i < order.size(); ++i) {
    records[order[i]].Links[link] = std::to_string(order[i - 1]);
    records[order[i - 1]].Links[link + 1] = std::to_string(order[i]);
  }
  return order.empty() ? std::string() : std::to_string(order.front());
}

std::vector<std::size_t> Sorted(const std::vector<Invented>& records,
                                const std::vector<std::size_t>& live, std::string Invented::*text) {
  const TextComparer comparer;
  std::vector<std::string> keys(records.size());
  for (const std::size_t index : live) keys[index] = comparer.SortKey(records[index].*text);
  std::vector<std::size_t> order = live;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  return order;
}

void Write(const std::string& path, const std::string& bytes) {
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  if (!(stream << bytes).flush()) throw std::runtime_error("cannot write " + path);
}

void WriteRecordFiles(const std::string& folder, const std::vector<Invented>& records) {
  constexpr std::size_t PerFile = 100;
  const FieldArray keys = StoreData().FieldKeys;
  for (std::size_t first = 0; first < records.size(); first += PerFile) {
    std::string bytes;
    for (std::size_t n = first; n < std::min(first + PerFile, records.size()); ++n) {
      const Invented& record = records[n];
      bytes += "[Record" + std::to_string(n) + "]\r\n";
      for (std::size_t i = 0; i < keys.size(); ++i) Put(bytes, keys[i], record.Fields[i]);
      Put(bytes, "ShowName", record.ShowName);
      Put(bytes, "ShowCompany", record.ShowCompany);
      for (std::size_t i = 0; i < LinkKeys.size(); ++i) Put(bytes, LinkKeys[i], record.Links[i]);
    }
    Write(folder + "/quill" + std::to_string(first / PerFile) + ".dat", bytes);
  }
}

}  // namespace

void WriteDataSet(const std::string& folder, const DataSetShape& shape) {
  const auto total = static_cast<std::size_t>(shape.Live) + static_cast<std::size_t>(shape.Deleted);
  std::vector<Invented> records;
  std::vector<std::size_t> live;
  std::vector<std::size_t> deleted;
  Inventor inventor;
  for (std::size_t n = 0; n < total; ++n) {
    records.push_back(inventor.Make());
    const std::size_t deletedSoFar = (n + 1) * static_cast<std::size_t>(shape.Deleted) / total;
    (deletedSoFar > deleted.size() ? deleted : live).push_back(n);
  }
  std::reverse(deleted.begin(), deleted.end());

  std::string header = "[General Info]\r\n";
  Put(header, "Application", "Quillary");
  Put(header, "TotalNoOfRecords", std::to_string(total));
  Put(header, "NoOfRecords", std::to_string(live.size()));
  const auto order = [&](std::string Invented::*text) {
    return shape.Scrambled ? live : Sorted(records, live, text);
  };
  Put(header, "NameFirstRecord", Chain(records, order(&Invented::ShowName), 0));
  Put(header, "CompanyFirstRecord", Chain(records, order(&Invented::ShowCompany), 2));
  Put(header, "DelNoOfRecords", std::to_string(deleted.size()));
  Put(header, "DelFirstRecord", Chain(records, deleted, 4));
  WriteRecordFiles(folder, records);
  Write(folder + "/quill.dat", header);
}

}  // namespace quillary::test

#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "store/text_list.h"

namespace quillary {

inline constexpr int MaxRecords = 32767;       // live records, and deleted ones
inline constexpr int MaxDeletedListed = 8000;  // deleted records that can be listed
inline constexpr int RecordsPerFile = 100;     // record numbers in one record file
inline constexpr std::uint8_t FieldCount = 16;

// The index of each field in FieldKeys and FieldValues.
enum Field : std::uint8_t {
  Sal,
  FirstName,
  LastName,
  Title,
  Company,
  Address1,
  Address2,
  Address3,
  Address4,
  Address5,
  Address6,
  Phone1,
  Phone2,
  Fax,
  EMail,
  Notes,
};

// A record's fields in the order of `Field`; all texts are UTF-8.
using FieldArray = std::array<std::string, FieldCount>;

// What the program knows of its data files. One object of it lives as long as the program; the
// store's procedures and the windows share it.
struct StoreData {
  std::string DataPath;  // ends in a backslash
  std::string DataFile;  // the header file, DataPath & "quill.dat"

  std::int16_t NoOfRecords = 0;  // live records, the length of the four lists that follow
  TextList NamesList{""};        // ShowName of each, in name order
  TextList NamesRecNo{""};       // its record number
  TextList CompaniesList{""};    // ShowCompany of each, in company order
  TextList CompaniesRecNo{""};
  // The chains in the files did not hold together: the lists above are every record that is not
  // deleted, and the next change writes all links anew.
  bool ListsIncomplete = false;
  // They did, but for records that were missing and are there again: the lists above have them.
  bool RecordsReturned = false;

  bool FilterOn = false;
  std::array<std::string, 5> FilterCriteria;  // FirstName, LastName, Title, Company, Notes
  std::int16_t FilteredCount = 0;
  TextList FilteredNames{""};
  TextList FilteredNamesRecNo{""};
  TextList FilteredCompanies{""};
  TextList FilteredCompaniesRecNo{""};

  // Deleted records as the restore dialog lists them; valid while it is open.
  std::int16_t DelCount = 0;  // DelNoOfRecords, not always as many as are listed
  TextList DelNamesList;
  TextList DelRecNo;
  std::string CurDelRecordNo;  // the entry selected there

  std::uint8_t ViewMode = 0;  // 0 list by name, otherwise by company

  std::uint8_t NoOfFields = FieldCount;
  FieldArray FieldKeys{"Sal",      "FirstName", "LastName", "Title",    "Company",  "Address1",
                       "Address2", "Address3",  "Address4", "Address5", "Address6", "Phone1",
                       "Phone2",   "Fax",       "EMail",    "Notes"};
  FieldArray FieldValues;  // the record being shown, made or changed
};

}  // namespace quillary

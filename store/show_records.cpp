#include "store/records.h"

namespace quillary {

void Records::ShowRecords() {
  const bool isByName = data_.ViewMode == 0;
  const auto count = data_.FilterOn ? data_.FilteredCount : data_.NoOfRecords;
  if (count < 1) {
    lines_.SetLines({}, {});
  } else if (data_.FilterOn) {
    lines_.SetLines(isByName ? data_.FilteredNames : data_.FilteredCompanies,
                    isByName ? data_.FilteredNamesRecNo : data_.FilteredCompaniesRecNo);
  } else {
    lines_.SetLines(isByName ? data_.NamesList : data_.CompaniesList,
                    isByName ? data_.NamesRecNo : data_.CompaniesRecNo);
  }
}

}  // namespace quillary

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What docs/file-format.md says, in the plainest way, to compare the program with.
namespace quillary::reference {

// The lines of a file, each with its end.
std::vector<std::string_view> Lines(std::string_view bytes);

// Every entry that counts: section and key in lower case, and the value.
using Entries = std::map<std::pair<std::string, std::string>, std::string>;
Entries EntriesOf(std::string_view bytes);

std::string Lower(std::string_view name);

// Ends the program where the fact does not hold.
void Expect(bool fact, const char* what);

}  // namespace quillary::reference

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillary {

// The name of the file in which the new bytes of `name` are written before they take its place.
// `process`: the number of the writing process, which tells a file left behind from one in use.
std::string TemporaryName(std::string_view name, long process);

// The process of a temporary file; nothing for a name that is not of this kind.
std::optional<long> TemporaryProcess(std::string_view name);

}  // namespace quillary

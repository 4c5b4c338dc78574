#include "store/temporary_name.h"

#include <charconv>

namespace quillary {
namespace {

constexpr std::string_view Prefix = ".quillary-";
constexpr std::string_view Suffix = ".tmp";

}  // namespace

std::string TemporaryName(std::string_view name, long process) {
  std::string result(Prefix);
  result += std::to_string(process);
  result += '-';
  result += name;
  result += Suffix;
  return result;
}

std::optional<long> TemporaryProcess(std::string_view name) {
  if (!name.starts_with(Prefix) || !name.ends_with(Suffix)) return std::nullopt;
  name.remove_prefix(Prefix.size());
  long process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  if (error != std::errc() || *end != '-') return std::nullopt;
  return process;
}

}  // namespace quillary

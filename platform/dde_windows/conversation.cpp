#include "platform/dde_windows/conversation.h"

#include <cstring>
#include <vector>

namespace quillary {
namespace {

// A client is told about links and the other side's end, which the next call finds out by itself.
HDDEDATA CALLBACK Ignore(UINT /*type*/, UINT /*format*/, HCONV /*conversation*/, HSZ /*string1*/,
                         HSZ /*string2*/, HDDEDATA /*data*/, ULONG_PTR /*data1*/,
                         ULONG_PTR /*data2*/) {
  return nullptr;
}

class StringHandle {
 public:
  StringHandle(DWORD instance, const std::string& text)
      : instance_(instance), handle_(DdeCreateStringHandleA(instance, text.c_str(), CP_WINANSI)) {}
  ~StringHandle() {
    if (handle_ != nullptr) DdeFreeStringHandle(instance_, handle_);
  }
  StringHandle(const StringHandle&) = delete;
  StringHandle& operator=(const StringHandle&) = delete;
  HSZ Handle() const { return handle_; }

 private:
  DWORD instance_;
  HSZ handle_;
};

std::string Utf8OfAnsi(const std::string& ansi) {
  if (ansi.empty()) return {};
  const int size = static_cast<int>(ansi.size());
  std::vector<wchar_t> wide(ansi.size());  // never more characters than bytes
  const int wideSize = MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, wide.data(), size);
  std::string utf8(3 * static_cast<std::size_t>(wideSize), '\0');
  utf8.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, utf8.data(),
                          static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

}  // namespace

Conversation::~Conversation() {
  End();
  if (instance_ != 0) DdeUninitialize(instance_);
}

bool Conversation::Open(const std::string& application, const std::string& topic) {
  End();
  if (instance_ == 0 &&
      DdeInitializeA(&instance_, Ignore, APPCMD_CLIENTONLY, 0) != DMLERR_NO_ERROR) {
    instance_ = 0;
    return false;
  }
  const StringHandle service(instance_, application);
  const StringHandle subject(instance_, topic);
  conversation_ = DdeConnect(instance_, service.Handle(), subject.Handle(), nullptr);
  return conversation_ != nullptr;
}

std::optional<std::string> Conversation::Request(const std::string& item, unsigned timeoutMs) {
  if (conversation_ == nullptr) return std::nullopt;
  const StringHandle name(instance_, item);
  const HDDEDATA data = DdeClientTransaction(nullptr, 0, conversation_, name.Handle(), CF_TEXT,
                                             XTYP_REQUEST, timeoutMs, nullptr);
  if (data == nullptr) return std::nullopt;
  std::string text(DdeGetData(data, nullptr, 0, 0), '\0');
  DdeGetData(data, reinterpret_cast<LPBYTE>(text.data()), static_cast<DWORD>(text.size()), 0);
  DdeFreeDataHandle(data);
  text.resize(strnlen(text.data(), text.size()));
  return Utf8OfAnsi(text);
}

bool Conversation::Execute(const std::string& command, unsigned timeoutMs) {
  if (conversation_ == nullptr) return false;
  std::string bytes = command;
  const auto size = static_cast<DWORD>(bytes.size() + 1);  // with the zero at its end
  return DdeClientTransaction(reinterpret_cast<LPBYTE>(bytes.data()), size, conversation_, nullptr,
                              0, XTYP_EXECUTE, timeoutMs, nullptr) != nullptr;
}

void Conversation::End() {
  if (conversation_ != nullptr) DdeDisconnect(conversation_);
  conversation_ = nullptr;
}

}  // namespace quillary

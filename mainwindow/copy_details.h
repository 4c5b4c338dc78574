#pragma once

#include <string>

namespace quillary {

// Puts the text on the clipboard, as plain text, in place of what is there.
void CopyToClipboard(const std::string& text);

}  // namespace quillary

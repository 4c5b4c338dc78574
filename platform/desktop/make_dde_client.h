#pragma once

#include <memory>

#include "platform/dde_client.h"

namespace quillary {

// The client of this desktop: on Windows the system's dynamic data exchange; elsewhere WriterDde.
// To be called and used where events run.
std::unique_ptr<DdeClient> MakeDdeClient();

}  // namespace quillary

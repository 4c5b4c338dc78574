#pragma once

namespace quillary {

// Whether a process of this number runs on this machine, whoever owns it. Numbers that no process
// can have are not alive.
bool ProcessIsAlive(long pid);

// The number of this process.
long ProcessNumber();

}  // namespace quillary

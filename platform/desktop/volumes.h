#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

namespace quillary {

// A mounted volume that a user would know by name.
struct Volume {
  QString Name;  // "File System", "Home", or what a removable medium is called
  QString Path;  // the host's folder, without a slash at its end (but for the root)
  bool IsRemovable = false;
};

// The root, the user's home folder, and the removable media: what is mounted below /media,
// /run/media or /mnt, and what stands on a device that can be taken out. Each path once; the media
// by their paths. Asks only the kernel's tables, so that a medium that does not answer holds nobody
// up.
std::vector<Volume> MountedVolumes();

// The same from a table in the form of /proc/self/mountinfo. `isRemovableDevice` is asked with a
// device number ("8:17").
std::vector<Volume> VolumesOf(
    const QByteArray& mountTable, const QString& home,
    const std::function<bool(const QByteArray& device)>& isRemovableDevice);

}  // namespace quillary

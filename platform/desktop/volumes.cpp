#include "platform/desktop/volumes.h"

#include <QDir>
#include <QFile>
#include <QList>
#include <algorithm>
#include <array>
#include <utility>

namespace quillary {
namespace {

// What is found in the usual places for media without being one.
constexpr std::array<const char*, 9> NoMedia{"autofs", "cgroup", "cgroup2", "devtmpfs", "overlay",
                                             "proc",   "ramfs",  "sysfs",   "tmpfs"};

// Blanks, tabs, line feeds and backslashes are three octal digits behind a backslash.
QString UnescapedPath(const QByteArray& written) {
  QByteArray path;
  for (qsizetype i = 0; i < written.size(); ++i) {
    bool isOctal = false;
    const int code = written.mid(i + 1, 3).toInt(&isOctal, 8);
    if (written[i] == '\\' && isOctal && code <= 0xFF) {
      path += static_cast<char>(code);
      i += 3;
    } else {
      path += written[i];
    }
  }
  return QFile::decodeName(path);
}

bool IsPlaceForMedia(const QString& path) {
  return path.startsWith(QStringLiteral("/media/")) ||
         path.startsWith(QStringLiteral("/run/media/")) || path.startsWith(QStringLiteral("/mnt/"));
}

bool ReadsOne(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == "1";
}

// A partition says of itself nothing; its disk, the folder above, does.
bool IsRemovableDevice(const QByteArray& device) {
  const QString folder = QStringLiteral("/sys/dev/block/") + QString::fromLatin1(device);
  const QString entry = QFile::exists(folder + QStringLiteral("/partition"))
                            ? QStringLiteral("/../removable")
                            : QStringLiteral("/removable");
  // The folder is a link: what is above it is above what it leads to.
  return ReadsOne(QDir(folder).canonicalPath() + entry);
}

}  // namespace

std::vector<Volume> VolumesOf(
    const QByteArray& mountTable, const QString& home,
    const std::function<bool(const QByteArray& device)>& isRemovableDevice) {
  std::vector<Volume> media;
  for (const QByteArray& line : mountTable.split('\n')) {
    // number, parent, device, root, mount point, options, ... - type, source, options
    const QList<QByteArray> fields = line.split(' ');
    const qsizetype dash = fields.indexOf("-", 5);
    if (dash < 0 || dash + 1 >= fields.size()) continue;
    const QByteArray& type = fields[dash + 1];
    if (std::find(NoMedia.begin(), NoMedia.end(), type) != NoMedia.end()) continue;
    const QString path = UnescapedPath(fields[4]);
    // A system that was started from a stick does not run on a medium to take out.
    if (path == QStringLiteral("/") || path == home || path.startsWith(QStringLiteral("/boot"))) {
      continue;
    }
    if (!IsPlaceForMedia(path) && !isRemovableDevice(fields[2])) continue;
    media.push_back({path.section(QLatin1Char('/'), -1), path, true});
  }
  const auto byPath = [](const Volume& a, const Volume& b) { return a.Path < b.Path; };
  const auto samePath = [](const Volume& a, const Volume& b) { return a.Path == b.Path; };
  std::sort(media.begin(), media.end(), byPath);
  media.erase(std::unique(media.begin(), media.end(), samePath), media.end());

  std::vector<Volume> volumes{{QStringLiteral("File System"), QStringLiteral("/"), false}};
  if (home != QStringLiteral("/")) volumes.push_back({QStringLiteral("Home"), home, false});
  std::move(media.begin(), media.end(), std::back_inserter(volumes));
  return volumes;
}

std::vector<Volume> MountedVolumes() {
  QFile table(QStringLiteral("/proc/self/mountinfo"));
  // Without the table there are the root and the home folder still.
  const bool isOpen = table.open(QIODevice::ReadOnly);
  return VolumesOf(isOpen ? table.readAll() : QByteArray(), QDir::homePath(), IsRemovableDevice);
}

}  // namespace quillary

#include <cstdlib>

#include "auxiliary/pictures.h"

// Draws the program's icon in every size in which it is installed, each to
// <folder>/quillary-<side>.png. Fails if one cannot be written.
//
//   draw_icons <folder>
int main(int argc, char* argv[]) {
  if (argc != 2) return EXIT_FAILURE;
  for (const int side : quillary::kIconSides) {
    const QString file = QStringLiteral("%1/quillary-%2.png")
                             .arg(QString::fromLocal8Bit(argv[1]), QString::number(side));
    if (!quillary::IconImage(side).save(file)) return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}

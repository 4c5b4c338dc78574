#pragma once

#include <QString>
#include <QWidget>

namespace quillary {

// For assistive technologies, such as screen readers.

// Gives frames and the status bar's grip roles that do not mislead: Qt tells a frame as a window of
// its own and the grip as nothing known. To be called once, when the application is made.
void InstallAccessibleRoles();

// What a control that only shows a text is called: "caption: text", or the caption where there is
// none. Sets it where it has changed.
void SetAccessibleText(QWidget& control, const QString& caption, const QString& text);

// Tells that the focus is on `control`, or on that child of it (a line of a list; -1 for none). The
// control or a parent of it has the focus: of that Qt tells by itself, so this comes later, and not
// if the focus has moved on.
void TellFocus(QWidget& control, int child = -1);

}  // namespace quillary

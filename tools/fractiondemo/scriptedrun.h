#pragma once

#include <QString>

class QAbstractButton;
class QLineEdit;

namespace kelfractionint {

class demowindow;

namespace scriptedrun {

/*! Types \a text into \a field as a user would: focus, the text selected, then one key press and release
 *  per character, each delivered to the field that has the focus at that moment. */
void typeinto(QLineEdit *field, const QString &text);
/*! Presses and releases the left mouse button on \a button. */
void click(QAbstractButton *button);

/*! The demo's short tour on \a window (shown): types two operands, reduces the first, adds them
 *  and writes the result as a mixed number; then saves a picture of the whole window to \a png.
 *  Returns false when the picture could not be written. */
bool run(demowindow &window, const QString &png);

/*! Writes the README's pictures into \a dir: controls.png (a form with controls in several
 *  states), sizes.png (fonts from 8 to 40 pt in five states) and table.png (the measurements
 *  page). Returns false when a picture could not be written. */
bool gallery(const QString &dir);

} // namespace scriptedrun
} // namespace kelfractionint

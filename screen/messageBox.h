#pragma once

#include <QMessageBox>
#include <functional>

namespace tessel {

/// Shows a plain text in a message box that fits the screen, and returns the pressed button. A text
/// that is too long for that is cut, long lines in their middle; the details then have it whole.
/// Copy (Ctrl+C) always copies the whole text. `closedByEsc`, unless null, is set when the user
/// pressed Esc.
QMessageBox::StandardButton ShowBox(const QString& title, const QString& text,
                                    QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton defaultButton,
                                    bool* closedByEsc = nullptr);

}  // namespace tessel

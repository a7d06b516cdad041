#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace tessel {

/// Fills TheHost from the toolkit, except ShowModal and ShowProgress, which the owner of the
/// windows fills. Requires an application object.
void FillHost();

/// Use the toolkit's file dialogs even where the desktop has its own, so that tests can drive them.
extern bool UseToolkitDialogs;

/// Called when the user has closed a message box of the program with Esc.
extern std::function<void()> OnMessageEsc;

/// The width that a dialog's title and the buttons beside it need, in logical pixels.
int TitleWidth(const QWidget& dialog);

/// The window that a new dialog belongs to, or null.
QWidget* DialogOwner();

/// Scope guard that shows the normal pointer instead of the hourglass: for a dialog that waits for
/// the user.
class NormalPointerScope {
  public:
    NormalPointerScope();
    ~NormalPointerScope();
    NormalPointerScope(const NormalPointerScope&) = delete;
    NormalPointerScope& operator=(const NormalPointerScope&) = delete;
};

}  // namespace tessel

#pragma once

#include <QString>

class QWidget;

namespace tessel {

/// Fills TheHost from the toolkit, but for ShowModal, which the owner of the windows fills. Call it
/// once there is an application object.
void FillHost();

/// File dialogs are the toolkit's own also where the desktop brings one: tests can drive those.
extern bool UseToolkitDialogs;

/// A text for a message box: a word that no screen is wide enough for, a long path for one, may be
/// broken anywhere.
QString BreakLongWords(QString text);

/// The window that a dialog opened now belongs to.
QWidget* DialogOwner();

/// While one lives, the hourglass is put away: a dialog waits for the person, not the other way
/// round.
class NormalPointerScope {
  public:
    NormalPointerScope();
    ~NormalPointerScope();
    NormalPointerScope(const NormalPointerScope&) = delete;
    NormalPointerScope& operator=(const NormalPointerScope&) = delete;
};

}  // namespace tessel

#pragma once

#include <string>

#include "platform/textDisplay.h"

namespace tessel {

/// Converts every line break of a text that arrives in parts to CR LF.
class LineEnds {
  public:
    /// Converts the line breaks of `part` in place. A CR at its end is held back until the next
    /// part, unless `onlyCrLf` says that the text has no line breaks except CR LF.
    void Convert(PageText& part, bool onlyCrLf);
    /// Returns the line break that is held back at the end of the text, if any.
    PageText Rest();

  private:
    bool PendingCr = false;
};

/// The file number of Save Display, different from kTargetFile because a copy can run meanwhile.
inline constexpr int kTextFile = 21;

/// Writes a display's text as UTF-8 with CR LF to the file that is open under kTextFile, and closes
/// it. Processes pending events between the parts of the text; returns false when an event sets
/// `stop`: the file then contains the first parts. Raises the errors of WriteFile and CloseFile.
bool WriteTextFile(const TextDisplay& display, const bool& stop);

}  // namespace tessel

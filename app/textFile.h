#pragma once

#include <string>

#include "platform/textDisplay.h"

namespace tessel {

/// Converts every line break of a text that arrives in parts to CR LF.
class LineEnds {
  public:
    /// Converts the line breaks of `part` in place. A CR at its end is kept back until the next
    /// part, unless `onlyCrLf` says that the text has no line breaks except CR LF.
    void Convert(std::string& part, bool onlyCrLf);
    /// Returns what is still kept back at the end of the text.
    std::string Rest();

  private:
    bool PendingCr = false;
};

/// Writes a display's text to a new file as UTF-8 with CR LF, and processes pending events between
/// parts. Returns false when an event sets `stop`: the file then holds the first parts. Raises the
/// errors of creating and of writing a file.
bool WriteTextFile(const TextDisplay& display, const std::string& path, const bool& stop);

}  // namespace tessel

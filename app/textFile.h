#pragma once

#include <string>
#include <string_view>

#include "platform/textDisplay.h"

namespace tessel {

/// Turns every line break of a text that comes in parts into CR LF.
class LineEnds {
  public:
    /// `part` with its line breaks as CR LF. A CR at its end waits for what follows.
    std::string_view Converted(std::string_view part);
    /// What still waits when the text has ended.
    std::string_view Rest();

  private:
    std::string Buffer;
    bool HeldCr = false;
};

/// Writes a display's text to a new file as UTF-8 with CR LF, part by part, and lets
/// events in between them. Raises what creating
/// and writing a file raise.
void WriteTextFile(const TextDisplay& display, const std::string& path);

}  // namespace tessel

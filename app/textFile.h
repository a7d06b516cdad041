#pragma once

#include <string>

#include "platform/textDisplay.h"

namespace tessel {

/// Turns every line break of a text that comes in parts into CR LF.
class LineEnds {
  public:
    /// Makes the line breaks of `part` CR LF. A CR at its end waits for what follows, unless
    /// `onlyCrLf` tells that the text around it has no other line breaks.
    void Convert(std::string& part, bool onlyCrLf);
    /// What still waits when the text has ended.
    std::string Rest();

  private:
    bool HeldCr = false;
};

/// Writes a display's text to a new file as UTF-8 with CR LF, part by part, and lets events in
/// between them. False when they set `stop`: the file then holds the first parts. Raises what
/// creating and writing a file raise.
bool WriteTextFile(const TextDisplay& display, const std::string& path, const bool& stop);

}  // namespace tessel

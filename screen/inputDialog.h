#pragma once

#include <string>
#include <vector>

#include "platform/host.h"

namespace tessel {

/// Asks for a text in a dialog of the toolkit, see Host::InputBox. The text is selected at
/// first; with choices, Down and Up step through those that can be chosen, Alt+Down or F4 opens the
/// list.
std::string AskText(const std::string& prompt, const std::string& title, const std::string& text,
                    const std::vector<InputChoice>& choices);

}  // namespace tessel

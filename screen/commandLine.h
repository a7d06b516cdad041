#pragma once

#include <QString>
#include <optional>

namespace tessel {

/// Whether the command line only asks for a text (--help, --version), which needs no screen.
bool AsksForText(int argc, char* argv[]);

/// Reads the command line of the application object: at most one disk image, as a desktop passes
/// it, or --help or --version, which are printed and end the process. Returns the image's absolute
/// path with the host's separators, "" without one. For anything else, more than one file included,
/// prints the error and a line of usage to standard error and returns nothing.
std::optional<QString> ImageFromCommandLine();

}  // namespace tessel

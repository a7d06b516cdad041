#include "screen/commandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <string_view>

namespace tessel {

bool AsksForText(int argc, char* argv[]) {
    using std::string_view_literals::operator""sv;
    char** const end = std::find(argv + 1, argv + argc, "--"sv);  // file names follow
    return std::any_of(argv + 1, end, [](std::string_view argument) {
        return argument == "--help" || argument == "-h" || argument == "--version" ||
               argument == "-v";
    });
}

std::optional<QString> ImageFromCommandLine() {
    QCommandLineParser parser;
    parser.setApplicationDescription("Viewer and extractor for FAT12 and FAT16 disk images.");
    const QCommandLineOption help({"h", "help"}, "Print this help.");
    const QCommandLineOption version({"v", "version"}, "Print the version.");
    parser.addOptions({help, version});
    parser.addPositionalArgument("file", "The disk image to open.", "[file]");

    QString error;
    if (!parser.parse(QCoreApplication::arguments())) {
        error = parser.errorText();
    } else if (parser.isSet(help)) {
        parser.showHelp();
    } else if (parser.isSet(version)) {
        parser.showVersion();
    } else if (parser.positionalArguments().size() > 1) {
        error = QStringLiteral("Only one disk image can be opened.");
    }
    if (!error.isEmpty()) {
        std::fprintf(stderr, "tessel: %s\nUsage: tessel [--help | --version | file]\n",
                     qPrintable(error));
        return std::nullopt;
    }
    const QString file = parser.positionalArguments().value(0);
    if (file.isEmpty()) return QString();
    return QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(file).absoluteFilePath()));
}

}  // namespace tessel

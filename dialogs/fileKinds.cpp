#include "dialogs/fileKinds.h"

#include <vector>

#include "util/numberText.h"

namespace tessel {
namespace {

constexpr const char* kAll = "|All Files (*.*)|*.*";

constexpr const char* kTextPatterns =
    "*.AF;*.AG;*.AI;*.CD;*.CF;*.CI;*.EQ;*.FF;*.HT;*.LF;*.LG;*.LL;*.LS;*.MC;*.MX;*.NW;*.PF;*.PL;*."
    "SA;*.SI";
constexpr const char* kFilePatterns =
    "*.AF;*.AG;*.AI;*.CD;*.CF;*.CI;*.DB;*.EM;*.EQ;*.FF;*.HT;*.IN;*.LF;*.LG;*.LL;*.LO;*.LS;*.MC;*."
    "MG;*.MX;*.NW;*.OW;*.PC;*.PF;*.PL;*.PO;*.RO;*.RS;*.SA;*.SI;*.SY;*.TF";

std::string WithAll(const std::string& filter) { return filter + kAll; }

/// The kinds, in the order in which a keyword is looked up.
const std::vector<FileKind>& Kinds() {
    static const std::vector<FileKind> kinds = {
        {"", "All Files (*.*)|*.*", "", 1, "", kElseKey},
        {"BIN", WithAll("Binary File (*.bin)|*.bin"), "bin", 1, "Binary", "BIN"},
        {"COM", WithAll("Command File (*.com)|*.com"), "com", 1, "Command", "COM"},
        {"DEF", WithAll("Definition File (*.def)|*.def"), "def", 1, "Definitions", "DEF"},
        {"DASM", WithAll("Disassembled Files (*.dasm;*.dlst)|*.dasm;*.dlst"), "dasm", 1,
         "Disassembled Source", "DAS"},
        {"CLR", WithAll("Colors File (*.clr)|*.clr"), "clr", 1, "Colors", "CLR"},
        {"RWE", WithAll("Memory Attributes File (*.rwe)|*.rwe"), "rwe", 1, "Memory Attributes",
         "RWE"},
        {"LOADFILES",
         WithAll("All Memory Files "
                 "(*.bin;*.hex;*.ihx;*.mx;*.ent;*.com)|*.bin;*.hex;*.ihx;*.mx;*.ent;*.com|Binary "
                 "File (*.bin)|*.bin|i-Hex File (*.hex;*.ihx)|*.hex;*.ihx|S-rec File "
                 "(*.mx)|*.mx|com File (*.com)|*.com"),
         "bin", 1, "Load Memory", "Load"},
        {"SAVEFILES",
         WithAll(
             "All Memory Files "
             "(*.bin;*.hex;*.ihx;*.mx;*.com;*.dasm;*.dlst;*.dump)|*.bin;*.hex;*.ihx;*.mx;*.com;*."
             "dasm;*.dlst;*.dump|Disassembled Files (*.dasm;*.dlst)|*.dasm;*.dlst|Disassembled "
             "Source File (*.dasm)|*.dasm|Disassembled List File (*.dlst)|*.dlst|Binary File "
             "(*.bin)|*.bin|i-Hex File (*.hex;*.ihx)|*.hex;*.ihx|S-rec File (*.mx)|*.mx|com File "
             "(*.com)|*.com|dump File (*.dump)|*.dump"),
         "bin", 1, "Save Memory", "Save"},
        {"ULOAD", "All Files (*.*)|*.*", "", 1, "\"Upload to Host System\"", "ULoad"},
        {"DLOAD", "All Files (*.*)|*.*", "", 1, "\"Download into Emulator\"", "DLoad"},
        {"IMG",
         WithAll("All Disk Image Files (*.img;*.dsk;*.raw)|*.img;*.dsk;*.raw|Image File "
                 "(*.img)|*.img|Disk File (*.dsk)|*.dsk|RAW File (*.raw)|*.raw"),
         "img", 1, "Raw Disk Image", "IMG"},
        {"IMD", WithAll("IMD File (*.imd)|*.imd"), "imd", 1, "Image Disk File", "IMD"},
        {"DRV",
         WithAll("All Disk Image Files (*.img;*.dsk;*.imd)|*.img;*.dsk;*.imd|Image File "
                 "(*.img)|*.img|Disk File (*.dsk)|*.dsk|IMD File (*.imd)|*.imd"),
         "img", 1, "Disk Image", ""},
        {"FMT", WithAll("Disk Format Files  (*.fmt)|*.fmt"), "fmt", 1, "Disk Image Format", "FMT"},
        {"PRN", WithAll("Printer Spool File (*.prn)|*.prn"), "prn", 1, "Printer", "PRN"},
        {"IOREMAPFILES", "IO map Files (*.iom;*.iomap)|*.iom;*.iomap", "iom", 1,
         "I/O Remap Definition", "IOM"},
        {"IOPANELS", "IO Panel Files (*.iop;*.iopanel)|*.iop;*.iopanel", "iop", 1,
         "I/O Panel Definition", "IOP"},
        {"PIO", WithAll("IO Properties Files  (*.pio)|*.pio"), "pio", 1, "IO Properties", "PIO"},
        {"CASSETTE", WithAll("Cassette Tape(*.cas)|*.cas"), "cas", 1, "Cassette", "CAS"},
        {"DAD", WithAll("Data Definition File (*.dad)|*.dad"), "dad", 1, "Data Area Definition",
         "DAD"},
        {"TAB", WithAll("Terminal Abilities File (*.tab)|*.tab"), "tab", 1, "Terminal Abilities",
         "TAB"},
        {"FKY", WithAll("Function Key Definition File (*.fky)|*.fky"), "fky", 1, "Function Keys",
         "FKY"},
        {"KBD", WithAll("KeyBoard Definition File (*.kbd)|*.kbd"), "kbd", 1, "Keyboard Definitions",
         "KBD"},
        {"VDOSTEXT",
         "Text File (*.txt)|*.txt|VersaDoS Text File|" + std::string(kTextPatterns) + kAll, "txt",
         2, "VersaDoS Text", "VTXT"},
        {"VDOSDUMP",
         "VersaDos Data Block File (*.VDB)|*.VDB|VersaDoS File|" + std::string(kFilePatterns) +
             kAll,
         "VDB", 2, "VersaDoS DUMP", "VDUMP"},
        {"VDOSREC",
         "VersaDos Record File (*.VDR)|*.VDR|VersaDoS File|" + std::string(kFilePatterns) + kAll,
         "VDR", 2, "VersaDoS Records", "VREC"},
        {"TXT", WithAll("Text File (*.txt)|*.txt"), "txt", 1, "Text", "TXT"},
        {"RTF", WithAll("Rich Text File (*.rtf)|*.rtf"), "rtf", 1, "Rich Text", "RTF"},
        {"IRS", WithAll("Interrupt Reset Settings (*.irs)|*.irs"), "irs", 1,
         "Interrupt Reset Settings", "IRS"},
        {"IDA", WithAll("Interrupt Device Assignments (*.ida)|*.ida"), "ida", 1,
         "Interrupt Device Assignments", "IDA"},
    };
    return kinds;
}

}  // namespace

FileKind FileKindOf(const std::string& keyword) {
    const std::string upper = UpperCase(keyword);
    for (const FileKind& kind : Kinds()) {
        if (kind.Keyword == upper) return kind;
    }
    return {.Keyword = upper,
            .Filter = WithAll("File (*." + keyword + ")|*." + keyword),
            .DefaultExtension = keyword,
            .FilterIndex = 1,
            .KindDescription = "",
            .SettingsKey = kElseKey};
}

int DriveSlotOf(const std::string& keyword) {
    for (int slot = 1; slot <= 16; ++slot) {
        // From 13 on the keywords have three digits.
        if (keyword == kDriveSlotKeyword + Padded(slot, slot < 13 ? 2 : 3)) return slot;
    }
    return 0;
}

std::string DriveKey(int slot) { return "DRIVE" + Padded(slot, 2); }

}  // namespace tessel

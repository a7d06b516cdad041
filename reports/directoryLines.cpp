#include "reports/directoryLines.h"

#include "util/modUtility.h"
#include "volume/directory.h"
#include "volume/onDisk.h"

namespace tessel {

std::string ListLine(Long row, bool full) {
    const DirEntry& e = DirEntries(row);
    std::string line;
    const auto add = [&line](auto... texts) { (line.append(texts), ...); };
    if (IsVolumeLabel(row)) add("{", e.Name, e.Ext, "} ");
    if (IsDirectory(row)) {
        const std::string name = Trimmed(e.Name);
        add("[", e.Name, name == "." || name == ".." ? " " : ".", e.Ext, "]");
    }
    if (IsFile(row)) add(" ", e.Name, ".", e.Ext, " ");
    if (!full) return line;

    line += " " + LongNameText(row) + "\r\n";
    line += " " + AttrText(e.Attributes);
    line += " C-" + DateTimeText(e.CreateDate, e.CreateTime);
    line += " M-" + DateTimeText(e.ModifyDate, e.ModifyTime);
    line += " A-" + DateTimeText(e.AccessDate, -1);
    if (IsDirectory(row) || IsFile(row)) line += " CL-" + Padded(e.StartCluster, 4);
    if (IsFile(row)) line += " SZ (" + Padded(e.FileSize, 7) + ")";
    return line;
}

std::string EntryHint(Long row) {
    const DirEntry& e = DirEntries(row);
    std::string hint = LongNameText(row);
    if (!hint.empty()) hint += ", ";
    if (IsDirectory(row)) return hint + "directory";
    return hint + "file, " + SizeText(static_cast<std::uint32_t>(e.FileSize));
}

std::string DateTimeText(Long date, Long time) {
    const Long day = date & 31;
    const Long month = date >> 5 & 15;
    const Long year = date / 512 + 1980;
    std::string text = " " + Padded(month, 2) + "/" + Padded(day, 2) + "/" + Padded(year, 4);
    if (time != -1) {
        const Long seconds = (time & 31) * 2;
        const Long minutes = time >> 5 & 63;
        const Long hours = time >> 11 & 31;
        text += " " + Padded(hours, 2) + ":" + Padded(minutes, 2) + ":" + Padded(seconds, 2);
    }
    return text;
}

std::string AttrText(Long attributes) {
    const auto letter = [attributes](Long bit, char c) {
        return (attributes & bit) != 0 ? c : ' ';
    };
    return {letter(attribute::kReadOnly, 'R'), letter(attribute::kSystem, 'S'),
            letter(attribute::kHidden, 'H'), letter(attribute::kArchive, 'A')};
}

std::string DirectoryText() {
    std::string text;
    for (Long row = 0; row < DirEntries.Rows() && DirEntries(row).InUse; ++row) {
        const bool listed = IsDirectory(row) || IsFile(row) || IsVolumeLabel(row);
        if (listed && !IsDeleted(row)) text += ListLine(row, true) + "\r\n";
    }
    return text;
}

}  // namespace tessel

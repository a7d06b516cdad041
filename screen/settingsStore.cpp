#include "screen/settingsStore.h"

#include <QFileInfo>

#include "screen/bindControls.h"
#include "screen/messageBox.h"

namespace tessel {
namespace {

constexpr const char* kStoreName = "Tessel";
/// Far more than all values that the program stores: a larger file is somebody else's, and reading
/// it would take long.
constexpr qint64 kMostBytes = qint64{1} << 20;

QString SettingKey(const std::string& section, const std::string& key) {
    return ToQt(section) + '/' + ToQt(key);
}

}  // namespace

SettingsStorage::SettingsStorage() : Path(QSettings(kStoreName, kStoreName).fileName()) {}

bool SettingsStorage::IsUsable() const {
    // Where the store is no file, there is none to look at.
    const QFileInfo file(Path);
    return !file.exists() || (file.isFile() && file.size() <= kMostBytes);
}

void SettingsStorage::Refresh() {
    Stored.reset();
    if (IsUsable()) Stored = std::make_unique<QSettings>(Path, QSettings::NativeFormat);
}

std::string SettingsStorage::Read(const std::string& section, const std::string& key,
                                  const std::string& fallback) const {
    const QString name = SettingKey(section, key);
    const auto kept = Kept.find(name);
    if (kept != Kept.end()) return kept->second;
    if (!Stored || !Stored->contains(name)) return fallback;
    return Stored->value(name).toString().toStdString();
}

bool SettingsStorage::Store(const QString& key, const std::string& text) {
    // Anew, since an error stays with the object.
    Refresh();
    if (!Stored) return false;
    Stored->setValue(key, ToQt(text));
    Stored->sync();
    // Lines that are no settings are no reason not to store any.
    return Stored->status() != QSettings::AccessError;
}

void SettingsStorage::Write(const std::string& section, const std::string& key,
                            const std::string& text) {
    const QString name = SettingKey(section, key);
    if (Store(name, text)) {
        Kept.erase(name);
        return;
    }
    Kept[name] = text;
    if (std::exchange(Reported, true)) return;
    ShowBox("Error",
            "The settings cannot be stored. Folders are remembered until Tessel ends.\n" + Path,
            QMessageBox::NoIcon, QMessageBox::Ok, QMessageBox::Ok);
}

}  // namespace tessel

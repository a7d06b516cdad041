#pragma once

#include <QSettings>
#include <map>
#include <memory>
#include <string>

namespace tessel {

/// The settings of this user in the toolkit's native store. Other programs may write to it at the
/// same time; each keeps the keys of the others. A store that cannot be read counts as empty. What
/// cannot be stored is kept until the program ends, after one message box.
class SettingsStorage {
  public:
    /// Finds the store. Call it before anything redirects the toolkit's settings.
    SettingsStorage();
    /// Reads the store again.
    void Refresh();
    std::string Read(const std::string& section, const std::string& key,
                     const std::string& fallback) const;
    void Write(const std::string& section, const std::string& key, const std::string& text);

  private:
    bool IsUsable() const;
    bool Store(const QString& key, const std::string& text);

    QString Path;
    std::unique_ptr<QSettings> Stored;  // null when the store is not usable
    std::map<QString, std::string> Kept;
    bool Reported = false;
};

}  // namespace tessel

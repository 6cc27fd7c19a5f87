#include "Workbench/ContainerApp/Settings.h"

#include <glib.h>

namespace workbench {

Settings::Settings(Database& database)
    : read{database, "SELECT value FROM settings WHERE key = ?1"}
    , write{database, "INSERT INTO settings(key, value) VALUES(?1, ?2) ON CONFLICT(key) DO UPDATE SET value "
                      "= excluded.value"} {}

std::optional<std::string> Settings::value(std::string const& key) {
    auto rows = read.query(key);
    if (!rows.next())
        return {};
    return rows.text(0);
}

void Settings::set(std::string const& key, std::string const& value) {
    write.run(key, value);
}

namespace {

std::string documentsFolder() {
    auto const* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    return documents ? documents : std::string{g_get_home_dir()} + "/Documents";
}

} // namespace

std::string namedOutputFolder(Settings& settings) {
    return settings.value(outputFolderSetting).value_or(documentsFolder());
}

std::string outputFolder(Settings& settings) {
    if (!settings.value(outputFolderSetting))
        g_mkdir_with_parents(documentsFolder().c_str(), 0777);
    return namedOutputFolder(settings);
}

} // namespace workbench

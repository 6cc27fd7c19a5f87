#include "Workbench/ContainerApp/Settings.h"

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

} // namespace workbench

#include "Workbench/ContainerApp/ExportSettings.h"

#include "Workbench/ContainerApp/CommentReader.h"

#include <map>

namespace workbench {

namespace {

// Reads the members of one object and remembers whether one of them had a value that it cannot have.
class Members {
public:
    explicit Members(Json const& theObject)
        : object{theObject} {}

    template <class Value>
    void take(char const* key, std::optional<Value>& place) {
        auto const& value = member(object, key);
        if (value.is_null())
            return;
        if (isOf<Value>(value))
            place = value.get<Value>();
        else
            valid = false;
    }

    template <class Value>
    void take(char const* key, Value& place) {
        auto value = std::optional<Value>{};
        take(key, value);
        place = value.value_or(place);
    }

    template <class Value>
    void choose(char const* key, std::map<std::string, Value> const& choices, Value& place) {
        auto name = std::optional<std::string>{};
        take(key, name);
        if (!name)
            return;
        auto const choice = choices.find(*name);
        if (choice != choices.end())
            place = choice->second;
        else
            valid = false;
    }

    [[nodiscard]] bool areValid() const { return valid; }

private:
    template <class Value>
    static bool isOf(Json const& value) {
        if constexpr (std::is_same_v<Value, bool>)
            return value.is_boolean();
        else if constexpr (std::is_same_v<Value, double>)
            return value.is_number();
        else
            return value.is_string();
    }

    Json const& object;
    bool valid = true;
};

} // namespace

std::optional<ExportSettings> readExportSettings(Json const& settings) {
    auto result = ExportSettings{};
    auto members = Members{settings};
    members.take("format", result.format);
    members.take("folder", result.folder);
    members.take("fileName", result.fileName);
    members.take("replies", result.replies);
    members.take("timecodeStart", result.timecodeStart);
    members.take("frameRate", result.frameRate);
    members.take("sequenceId", result.sequence);
    members.choose("include", {{"all", false}, {"open", true}}, result.openOnly);
    members.choose("onExists", {{"rename", OnExists::Rename}, {"replace", OnExists::Replace}},
                   result.onExists);
    if (!members.areValid())
        return {};
    return result;
}

} // namespace workbench

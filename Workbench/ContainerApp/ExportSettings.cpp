#include "Workbench/ContainerApp/ExportSettings.h"

#include "Workbench/ContainerApp/CommentReader.h"

#include <map>
#include <type_traits>

namespace workbench {

namespace {

// A message quotes no more of a value.
constexpr std::size_t longestQuote = 80;

template <class Value>
constexpr char const* kindOf = "a text";

template <>
constexpr char const* kindOf<bool> = "true or false";

template <>
constexpr char const* kindOf<double> = "a number";

template <class Value>
bool isOf(Json const& value) {
    if constexpr (std::is_same_v<Value, bool>)
        return value.is_boolean();
    else if constexpr (std::is_same_v<Value, double>)
        return value.is_number();
    else
        return value.is_string();
}

template <class Value>
using Choices = std::map<std::string, Value>;

template <class Value>
std::string namesOf(Choices<Value> const& choices) {
    auto names = std::string{};
    for (auto const& [name, value] : choices)
        names += (names.empty() ? "\"" : " or \"") + name + '"';
    return names;
}

// Reads the members of one object.
class Members {
public:
    explicit Members(Json const& theObject)
        : object{theObject} {}

    template <class Value>
    void take(char const* key, std::optional<Value>& place) const {
        auto const& value = member(object, key);
        if (value.is_null())
            return;
        if (!isOf<Value>(value))
            throw wrongSetting(key, value, kindOf<Value>);
        place = value.get<Value>();
    }

    template <class Value>
    void take(char const* key, Value& place) const {
        auto value = std::optional<Value>{};
        take(key, value);
        place = value.value_or(place);
    }

    template <class Value>
    void choose(char const* key, Choices<Value> const& choices, Value& place) const {
        auto name = std::optional<std::string>{};
        take(key, name);
        if (!name)
            return;
        auto const choice = choices.find(*name);
        if (choice == choices.end())
            throw wrongSetting(key, *name, namesOf(choices));
        place = choice->second;
    }

private:
    Json const& object;
};

} // namespace

ExportSettings readExportSettings(Json const& settings) {
    auto result = ExportSettings{};
    auto const members = Members{settings};
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
    return result;
}

OutputError wrongSetting(std::string const& name, Json const& value, std::string const& wanted) {
    auto quote = value.dump(-1, ' ', true, Json::error_handler_t::replace);
    if (quote.size() > longestQuote)
        quote = quote.substr(0, longestQuote) + "...";
    return OutputError{"the setting \"" + name + "\" is " + quote + ", but it takes " + wanted};
}

} // namespace workbench

#include "Platform/Gtk/BusConversions.h"

#include "FcpExtension/EntranceRules.h"
#include "Platform/Gtk/GRef.h"

#include <glib.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace fcp {

namespace {

constexpr int dictionaryCost = 3; // array, entry, variant
constexpr int arrayCost = 2; // array, variant

// A variant of the smallest value takes at least four bytes on the wire.
constexpr std::size_t maximumValues = maximumBodySize / 4;

bool isNoncharacter(gunichar character) {
    return (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
}

// Makes text of what sd-bus refuses to write: bytes that are not UTF-8, NUL, and the noncharacters of
// Unicode, which it also refuses to read.
std::string repaired(std::string const& text) {
    GCharPtr const valid{g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))};
    std::string result;
    for (char* at = valid.get(); *at != '\0';) {
        char* const next = g_utf8_next_char(at);
        if (isNoncharacter(g_utf8_get_char(at)))
            result += "\uFFFD";
        else
            result.append(at, next);
        at = next;
    }
    return result;
}

bool isAscii(std::string const& text) {
    return g_str_is_ascii(text.c_str()) && std::strlen(text.c_str()) == text.size();
}

// Writes and counts at the same time, so that nothing is walked twice. Every operation answers false at the
// first limit that is exceeded.
class Writer {
public:
    explicit Writer(sd_bus_message& target)
        : message(&target) {}

    [[nodiscard]] bool dictionary(Json::object_t const& members, int cost);

    [[nodiscard]] std::size_t bodySize() const { return size; }

private:
    [[nodiscard]] bool member(std::string const& key, Json const& value, int cost);
    [[nodiscard]] bool value(Json const& value, int cost);
    [[nodiscard]] bool nestedDictionary(Json::object_t const& members, int cost);
    [[nodiscard]] bool nestedArray(Json::array_t const& elements, int cost);
    [[nodiscard]] bool stringValue(std::string const& text);
    [[nodiscard]] bool integer(std::uint64_t number);
    [[nodiscard]] bool number(char type, void const* bits);
    [[nodiscard]] bool text(std::string const& text);
    [[nodiscard]] bool variant(char const* signature);

    [[nodiscard]] bool open(char type, char const* contents) {
        return sd_bus_message_open_container(message, type, contents) >= 0;
    }

    [[nodiscard]] bool close() { return sd_bus_message_close_container(message) >= 0; }

    [[nodiscard]] bool count(std::size_t alignment, std::size_t bytes) {
        size = (size + alignment - 1) / alignment * alignment + bytes;
        return size <= maximumBodySize;
    }

    sd_bus_message* message;
    std::size_t size = 0;
};

bool Writer::dictionary(Json::object_t const& members, int cost) {
    cost += dictionaryCost;
    if (cost > maximumPathCost || !open('a', "{sv}") || !count(4, 4) || !count(8, 0))
        return false;
    std::set<std::string> repairedKeys;
    for (auto const& [key, value] : members) {
        if (isAscii(key)) {
            if (!member(key, value, cost))
                return false;
            continue;
        }
        auto const name = repaired(key);
        auto const taken = name != key && (members.contains(name) || !repairedKeys.insert(name).second);
        if (!taken && !member(name, value, cost))
            return false;
    }
    return close();
}

bool Writer::member(std::string const& key, Json const& value, int cost) {
    return open('e', "sv") && count(8, 0) && text(key) && this->value(value, cost) && close();
}

bool Writer::value(Json const& value, int cost) {
    switch (value.type()) {
    case Json::value_t::object:
        return nestedDictionary(value.get_ref<Json::object_t const&>(), cost);
    case Json::value_t::array:
        return nestedArray(value.get_ref<Json::array_t const&>(), cost);
    case Json::value_t::string:
        return stringValue(value.get_ref<std::string const&>());
    case Json::value_t::boolean: {
        int const flag = value.get<bool>() ? 1 : 0;
        return variant("b") && sd_bus_message_append_basic(message, 'b', &flag) >= 0 && count(4, 4) &&
               close();
    }
    case Json::value_t::number_integer: {
        auto const signedNumber = value.get<std::int64_t>();
        return number('x', &signedNumber);
    }
    case Json::value_t::number_unsigned:
        return integer(value.get<std::uint64_t>());
    case Json::value_t::number_float: {
        auto const real = value.get<double>();
        return number('d', &real);
    }
    case Json::value_t::null:
    case Json::value_t::binary:
    case Json::value_t::discarded:
        break;
    }
    return variant("g") && sd_bus_message_append_basic(message, 'g', "") >= 0 && count(1, 2) && close();
}

bool Writer::nestedDictionary(Json::object_t const& members, int cost) {
    return variant("a{sv}") && dictionary(members, cost) && close();
}

bool Writer::nestedArray(Json::array_t const& elements, int cost) {
    cost += arrayCost;
    if (cost > maximumPathCost || !variant("av") || !open('a', "v") || !count(4, 4))
        return false;
    for (auto const& element : elements)
        if (!value(element, cost))
            return false;
    return close() && close();
}

bool Writer::stringValue(std::string const& text) {
    return variant("s") && this->text(text) && close();
}

bool Writer::integer(std::uint64_t number) {
    auto const fits = number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return this->number(fits ? 'x' : 't', &number);
}

bool Writer::number(char type, void const* bits) {
    char const signature[] = {type, '\0'};
    return variant(signature) && sd_bus_message_append_basic(message, type, bits) >= 0 && count(8, 8) &&
           close();
}

bool Writer::text(std::string const& text) {
    // sd-bus ends a text at its first NUL, and checks it anyway: so good text is looked at only there.
    auto const whole = std::strlen(text.c_str()) == text.size();
    if (whole && sd_bus_message_append_basic(message, 's', text.c_str()) >= 0)
        return count(4, 4 + text.size() + 1);
    auto const valid = repaired(text);
    return sd_bus_message_append_basic(message, 's', valid.c_str()) >= 0 && count(4, 4 + valid.size() + 1);
}

// Opens a variant: its signature stands on the wire with a length before and a NUL behind.
bool Writer::variant(char const* signature) {
    return open('v', signature) && count(1, 1 + std::strlen(signature) + 1);
}

bool hasJsonForm(std::string_view type);

bool elementHasJsonForm(std::string_view type) {
    return type == "v" || hasJsonForm(type);
}

// Whether a complete type can hold JSON values at all; a variant may not hold a variant.
bool hasJsonForm(std::string_view type) {
    if (type.starts_with("a{s"))
        return elementHasJsonForm(type.substr(3, type.size() - 4));
    if (type.starts_with("a"))
        return elementHasJsonForm(type.substr(1));
    return type.size() == 1 && std::string_view("bynqiuxtdsg").find(type[0]) != std::string_view::npos;
}

// Reads one message. An operation that answers none has left its value out and stands behind it, unless the
// message proved unreadable: then every further operation fails, and so does the whole.
class Reader {
public:
    explicit Reader(sd_bus_message& source)
        : message(&source) {}

    [[nodiscard]] std::optional<Json> userInfo();

private:
    using Value = std::optional<Json>;

    [[nodiscard]] Value element(int cost);
    [[nodiscard]] Value variant(std::string const& type, int cost);
    [[nodiscard]] Value plain(char type, char const* contents, int cost);
    [[nodiscard]] Value container(std::string const& contents, int cost);
    [[nodiscard]] Value dictionary(std::string const& contents, int cost);
    [[nodiscard]] Value array(std::string const& contents, int cost);
    void member(Json& members, int cost);
    [[nodiscard]] Value boolean();
    [[nodiscard]] Value string();
    [[nodiscard]] Value null();
    [[nodiscard]] Value leftOut();

    template <typename T>
    [[nodiscard]] Value number(char type) {
        T number{};
        return read(type, &number) ? Value(number) : Value();
    }

    // For what must be there.
    [[nodiscard]] bool found(int result) { return readable = readable && result > 0; }

    // For what may be at its end, and then answers false without harm.
    [[nodiscard]] bool more(int result) {
        readable = readable && result >= 0;
        return readable && result > 0;
    }

    [[nodiscard]] bool read(char type, void* into) {
        return found(sd_bus_message_read_basic(message, type, into));
    }

    [[nodiscard]] bool enter(char type, std::string const& contents) {
        return found(sd_bus_message_enter_container(message, type, contents.c_str()));
    }

    void leave() { (void)found(sd_bus_message_exit_container(message)); }

    sd_bus_message* message;
    std::size_t values = 0;
    bool readable = true;
};

std::optional<Json> Reader::userInfo() {
    if (sd_bus_message_has_signature(message, "a{sv}") <= 0)
        return {};
    auto result = dictionary("{sv}", dictionaryCost);
    return readable ? std::move(result) : std::nullopt;
}

// The next value, wherever one stands: in an array, in a dictionary, not in a variant.
Reader::Value Reader::element(int cost) {
    char type = 0;
    char const* contents = nullptr;
    if (++values > maximumValues || !found(sd_bus_message_peek_type(message, &type, &contents))) {
        readable = false;
        return {};
    }
    return type == 'v' ? variant(contents, cost) : plain(type, contents, cost);
}

Reader::Value Reader::variant(std::string const& type, int cost) {
    if (!hasJsonForm(type))
        return leftOut();
    if (!enter('v', type))
        return {};
    auto result = plain(type[0], type.c_str() + 1, cost);
    leave();
    return result;
}

Reader::Value Reader::plain(char type, char const* contents, int cost) {
    switch (type) {
    case 'b':
        return boolean();
    case 'y':
        return number<std::uint8_t>(type);
    case 'n':
        return number<std::int16_t>(type);
    case 'q':
        return number<std::uint16_t>(type);
    case 'i':
        return number<std::int32_t>(type);
    case 'u':
        return number<std::uint32_t>(type);
    case 'x':
        return number<std::int64_t>(type);
    case 't':
        return number<std::uint64_t>(type);
    case 'd':
        return number<double>(type);
    case 's':
        return string();
    case 'g':
        return null();
    default:
        return container(contents, cost);
    }
}

Reader::Value Reader::container(std::string const& contents, int cost) {
    bool const isDictionary = contents.starts_with('{');
    cost += isDictionary ? dictionaryCost : arrayCost;
    if (cost > maximumPathCost)
        return leftOut();
    return isDictionary ? dictionary(contents, cost) : array(contents, cost);
}

Reader::Value Reader::dictionary(std::string const& contents, int cost) {
    if (!enter('a', contents))
        return {};
    auto members = Json::object();
    auto const entry = contents.substr(1, contents.size() - 2);
    while (more(sd_bus_message_enter_container(message, 'e', entry.c_str())))
        member(members, cost);
    leave();
    return members;
}

void Reader::member(Json& members, int cost) {
    char const* key = nullptr;
    if (!read('s', &key))
        return;
    auto value = element(cost);
    leave();
    addMember(members, key, std::move(value),
              cost == dictionaryCost ? ObjectPlace::Outermost : ObjectPlace::Nested);
}

Reader::Value Reader::array(std::string const& contents, int cost) {
    if (!enter('a', contents))
        return {};
    auto elements = Json::array();
    while (readable && sd_bus_message_at_end(message, 0) == 0)
        addElement(elements, element(cost));
    leave();
    return elements;
}

Reader::Value Reader::boolean() {
    int flag = 0;
    return read('b', &flag) ? Value(flag != 0) : Value();
}

Reader::Value Reader::string() {
    char const* text = nullptr;
    return read('s', &text) ? Value(text) : Value();
}

// Null is an empty signature; any other signature has no JSON form.
Reader::Value Reader::null() {
    char const* signature = nullptr;
    return read('g', &signature) && *signature == '\0' ? Value(nullptr) : Value();
}

Reader::Value Reader::leftOut() {
    readable = readable && sd_bus_message_skip(message, nullptr) >= 0;
    return {};
}

} // namespace

std::optional<std::size_t> appendUserInfo(sd_bus_message& message, Json const& userInfo) {
    Writer writer(message);
    if (!userInfo.is_object() || !writer.dictionary(userInfo.get_ref<Json::object_t const&>(), 0))
        return {};
    return writer.bodySize();
}

std::optional<Json> readUserInfo(sd_bus_message& message) {
    return Reader(message).userInfo();
}

} // namespace fcp

#include "Workbench/ContainerApp/BusValue.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <exception>

namespace workbench {

namespace {

// Ends the reading of a message that breaks off or contradicts itself.
class Malformed : public std::exception {};

int must(int status) {
    if (status < 0)
        throw Malformed{};
    return status;
}

using Value = std::optional<Json>; // none: JSON has nothing of the kind

Value readValue(sd_bus_message* message);

template <class Native>
Json readNumber(sd_bus_message* message, char type) {
    auto value = Native{};
    must(sd_bus_message_read_basic(message, type, &value));
    return value;
}

std::string readText(sd_bus_message* message, char type) {
    char const* text = nullptr;
    must(sd_bus_message_read_basic(message, type, &text));
    return text;
}

Value readBasic(sd_bus_message* message, char type) {
    switch (type) {
    case SD_BUS_TYPE_BOOLEAN:
        return readNumber<int>(message, type) != 0;
    case SD_BUS_TYPE_BYTE:
        return readNumber<std::uint8_t>(message, type);
    case SD_BUS_TYPE_INT16:
        return readNumber<std::int16_t>(message, type);
    case SD_BUS_TYPE_UINT16:
        return readNumber<std::uint16_t>(message, type);
    case SD_BUS_TYPE_INT32:
        return readNumber<std::int32_t>(message, type);
    case SD_BUS_TYPE_UINT32:
        return readNumber<std::uint32_t>(message, type);
    case SD_BUS_TYPE_INT64:
        return readNumber<std::int64_t>(message, type);
    case SD_BUS_TYPE_UINT64:
        return readNumber<std::uint64_t>(message, type);
    case SD_BUS_TYPE_DOUBLE:
        return readNumber<double>(message, type);
    case SD_BUS_TYPE_STRING:
        return readText(message, type);
    case SD_BUS_TYPE_SIGNATURE:
        return readText(message, type).empty() ? Value{Json{}} : Value{};
    default:
        must(sd_bus_message_skip(message, nullptr));
        return {};
    }
}

// The cursor stands in an array of `{s?}`.
Json readMembers(sd_bus_message* message, char const* entry) {
    auto object = Json::object();
    auto const contents = std::string{entry + 1, std::strlen(entry) - 2};
    while (must(sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, contents.c_str())) > 0) {
        auto key = readText(message, SD_BUS_TYPE_STRING);
        auto value = readValue(message);
        if (value)
            object.emplace(std::move(key), std::move(*value));
        must(sd_bus_message_exit_container(message));
    }
    return object;
}

Json readElements(sd_bus_message* message) {
    auto list = Json::array();
    while (must(sd_bus_message_at_end(message, 0)) == 0)
        list.push_back(readValue(message).value_or(Json{}));
    return list;
}

Value readArray(sd_bus_message* message, char const* element) {
    auto const isDictionary = element[0] == SD_BUS_TYPE_DICT_ENTRY_BEGIN;
    if (isDictionary && element[1] != SD_BUS_TYPE_STRING) {
        must(sd_bus_message_skip(message, nullptr));
        return {};
    }
    // The text that `element` points to lives in the container that is left.
    auto const type = std::string{element};
    must(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, type.c_str()));
    auto value = isDictionary ? readMembers(message, type.c_str()) : readElements(message);
    must(sd_bus_message_exit_container(message));
    return value;
}

Value readValue(sd_bus_message* message) {
    auto type = char{};
    char const* contents = nullptr;
    must(sd_bus_message_peek_type(message, &type, &contents));
    if (type == SD_BUS_TYPE_ARRAY)
        return readArray(message, contents);
    if (type != SD_BUS_TYPE_VARIANT)
        return readBasic(message, type);
    must(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, contents));
    auto value = readValue(message);
    must(sd_bus_message_exit_container(message));
    return value;
}

int appendText(sd_bus_message* message, std::string const& text) {
    // A zero byte would end the text unnoticed.
    if (text.find('\0') != std::string::npos)
        return -EINVAL;
    return sd_bus_message_append_basic(message, SD_BUS_TYPE_STRING, text.c_str());
}

int appendObject(sd_bus_message* message, Json const& object) {
    auto status = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "{sv}");
    for (auto const& [key, value] : object.items())
        if (status >= 0)
            status = appendMember(message, key, value);
    return status < 0 ? status : sd_bus_message_close_container(message);
}

int appendList(sd_bus_message* message, Json const& list) {
    auto status = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "v");
    for (auto const& value : list)
        if (status >= 0)
            status = appendVariant(message, value);
    return status < 0 ? status : sd_bus_message_close_container(message);
}

char const* signatureOf(Json const& value) {
    if (value.is_boolean())
        return "b";
    if (value.is_number_integer())
        return "x";
    if (value.is_number())
        return "d";
    if (value.is_string())
        return "s";
    if (value.is_object())
        return "a{sv}";
    return value.is_array() ? "av" : "g";
}

int appendPlain(sd_bus_message* message, Json const& value) {
    if (value.is_object())
        return appendObject(message, value);
    if (value.is_array())
        return appendList(message, value);
    if (value.is_string())
        return appendText(message, value.get_ref<std::string const&>());
    if (value.is_boolean())
        return sd_bus_message_append(message, "b", value.get<bool>() ? 1 : 0);
    if (value.is_number_integer())
        return sd_bus_message_append(message, "x", value.get<std::int64_t>());
    if (value.is_number())
        return sd_bus_message_append(message, "d", value.get<double>());
    return sd_bus_message_append(message, "g", "");
}

} // namespace

std::optional<Json> readDictionary(sd_bus_message* message) {
    try {
        if (must(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}")) == 0)
            return {};
        auto object = readMembers(message, "{sv}");
        must(sd_bus_message_exit_container(message));
        return object;
    } catch (Malformed const&) {
        return {};
    }
}

std::optional<Json> readVariant(sd_bus_message* message) {
    try {
        return readValue(message);
    } catch (Malformed const&) {
        return {};
    }
}

int appendVariant(sd_bus_message* message, Json const& value) {
    auto status = sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, signatureOf(value));
    if (status >= 0)
        status = appendPlain(message, value);
    return status < 0 ? status : sd_bus_message_close_container(message);
}

int appendMember(sd_bus_message* message, std::string const& key, Json const& value) {
    auto status = sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv");
    if (status >= 0)
        status = appendText(message, key);
    if (status >= 0)
        status = appendVariant(message, value);
    return status < 0 ? status : sd_bus_message_close_container(message);
}

} // namespace workbench

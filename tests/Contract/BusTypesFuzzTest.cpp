#include "Contract/Dice.h"
#include "Contract/RawBusPeer.h"
#include "Platform/Gtk/BusConversions.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

using fcp::Json;
using fcp::test::Dice;
using fcp::test::RawBusPeer;

namespace {

// Builds messages of arbitrary types and says what must be read of them.
class TypedMessage {
public:
    TypedMessage(RawBusPeer const& peer, Dice& source)
        : message(peer.makeSignal())
        , dice(source) {}

    // The whole body.
    [[nodiscard]] Json userInfo() {
        open('a', "{sv}");
        auto members = Json::object();
        for (int i = dice.below(6); i > 0; --i) {
            open('e', "sv");
            auto const key = appendKey('s');
            add(members, key, variant(4));
            close();
        }
        close();
        RawBusPeer::seal(*message);
        return members;
    }

    [[nodiscard]] sd_bus_message& get() const { return *message; }

private:
    using Value = std::optional<Json>;

    void open(char type, std::string const& contents) {
        EXPECT_GE(sd_bus_message_open_container(message.get(), type, contents.c_str()), 0)
            << type << contents;
    }

    void close() { EXPECT_GE(sd_bus_message_close_container(message.get()), 0); }

    void append(char type, void const* value) {
        EXPECT_GE(sd_bus_message_append_basic(message.get(), type, value), 0) << type;
    }

    static void add(Json& members, std::string const& key, Value const& value) {
        if (value && !members.contains(key))
            members[key] = *value;
    }

    [[nodiscard]] std::string type(int levels) {
        static std::string const basic = "bynqiuxtdsgoh";
        switch (levels > 0 ? dice.below(8) : 7) {
        case 0:
            return "v";
        case 1:
            return "a" + type(levels - 1);
        case 2:
            return "a{s" + type(levels - 1) + "}";
        case 3:
            return std::string("a{") + dice.oneOf(basic) + type(levels - 1) + "}";
        case 4:
            return "(" + type(levels - 1) + type(levels - 1) + ")";
        case 5:
            return "av";
        default:
            return basic.substr(static_cast<std::size_t>(dice.below(static_cast<int>(basic.size()))), 1);
        }
    }

    // A tuple, a path or a handle anywhere, or a key that is no text.
    [[nodiscard]] static bool hasForm(std::string const& type) {
        for (auto brace = type.find('{'); brace != std::string::npos; brace = type.find('{', brace + 1))
            if (type[brace + 1] != 's')
                return false;
        return type != "v" && type.find_first_of("oh(") == std::string::npos;
    }

    [[nodiscard]] Value variant(int levels) {
        auto const contents = type(levels);
        open('v', contents);
        auto const read = value(contents, levels - 1);
        close();
        return hasForm(contents) ? read : Value();
    }

    [[nodiscard]] Value value(std::string const& type, int levels) {
        if (type == "v")
            return variant(levels);
        if (type[0] == '(')
            return tuple(type, levels);
        if (type.starts_with("a{"))
            return dictionary(type, levels);
        if (type[0] == 'a')
            return array(type.substr(1), levels);
        return basic(type[0]);
    }

    [[nodiscard]] Value tuple(std::string const& type, int levels) {
        auto const contents = type.substr(1, type.size() - 2);
        open('r', contents);
        for (std::size_t at = 0; at < contents.size();) {
            auto const element = firstType(contents.substr(at));
            (void)value(element, levels);
            at += element.size();
        }
        close();
        return {};
    }

    [[nodiscard]] static std::string firstType(std::string const& types) {
        char const* end = nullptr;
        EXPECT_TRUE(g_variant_type_string_scan(types.c_str(), nullptr, &end)) << types;
        return types.substr(0, static_cast<std::size_t>(end - types.c_str()));
    }

    [[nodiscard]] Value dictionary(std::string const& type, int levels) {
        auto const contents = type.substr(1);
        open('a', contents);
        auto members = Json::object();
        for (int i = dice.below(3); i > 0; --i) {
            open('e', contents.substr(1, contents.size() - 2));
            auto const key = appendKey(contents[1]);
            add(members, key, value(contents.substr(2, contents.size() - 3), levels));
            close();
        }
        close();
        return members;
    }

    [[nodiscard]] Value array(std::string const& element, int levels) {
        open('a', element);
        auto elements = Json::array();
        for (int i = dice.below(3); i > 0; --i)
            elements.push_back(value(element, levels).value_or(nullptr));
        close();
        return elements;
    }

    std::string appendKey(char type) {
        if (type != 's') {
            (void)basic(type);
            return {};
        }
        static std::array<char const*, 4> const keys{"id", "seconds", "", "日本"};
        char const* const key = dice.oneOf(keys);
        append('s', key);
        return key;
    }

    [[nodiscard]] Value basic(char type) {
        switch (type) {
        case 's': {
            static std::array<char const*, 3> const texts{"", "text", "\u00e9\n"};
            return text('s', dice.oneOf(texts));
        }
        case 'o':
            (void)text('o', "/com/zelvix/fcp");
            return {};
        case 'g': {
            static std::array<char const*, 3> const signatures{"", "", "a{sv}"};
            auto const signature = text('g', dice.oneOf(signatures));
            return signature == "" ? Value(nullptr) : Value();
        }
        case 'h': {
            int const handle = 0;
            append('h', &handle);
            return {};
        }
        default:
            return number(type);
        }
    }

    [[nodiscard]] Value text(char type, char const* text) {
        append(type, text);
        return text;
    }

    [[nodiscard]] Value number(char type) {
        switch (type) {
        case 'b': {
            int const flag = dice.below(2);
            append(type, &flag);
            return flag != 0;
        }
        case 'd': {
            double const real = dice.below(100) / 4.0;
            append(type, &real);
            return real;
        }
        case 'y':
            return integer<std::uint8_t>(type);
        case 'n':
            return integer<std::int16_t>(type);
        case 'q':
            return integer<std::uint16_t>(type);
        case 'i':
            return integer<std::int32_t>(type);
        case 'u':
            return integer<std::uint32_t>(type);
        case 'x':
            return integer<std::int64_t>(type);
        default:
            return integer<std::uint64_t>(type);
        }
    }

    template <typename T>
    [[nodiscard]] Value integer(char type) {
        auto const integer = static_cast<T>(dice.bits());
        append(type, &integer);
        return integer;
    }

    fcp::SdBusMessagePointer message;
    Dice& dice;
};

TEST(BusConversionsFuzz, ReadsWhatHasAJsonFormOfAnyTypes) {
    Dice dice;
    RawBusPeer const peer;
    for (int round = 0; round < 20'000; ++round) {
        TypedMessage message(peer, dice);
        auto const expected = message.userInfo();
        ASSERT_EQ(fcp::readUserInfo(message.get()), expected) << "round " << round;
    }
}

} // namespace

#include "Contract/Dice.h"
#include "Contract/RawBusPeer.h"
#include "Platform/Gtk/BusConversions.h"
#include "Platform/Gtk/GRef.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>

using fcp::GRef;
using fcp::Json;
using fcp::test::Dice;
using fcp::test::RawBusPeer;

namespace {

// A text beside what it must be read as. No piece begins with what could complete the one before.
struct Text {
    std::string written;
    std::string read;
};

Text randomText(Dice& dice) {
    static std::array<Text, 10> const pieces{{{"id", "id"},
                                              {"seconds", "seconds"},
                                              {"é", "é"},
                                              {"日本", "日本"},
                                              {"🎬", "🎬"},
                                              {"\xFF", "\uFFFD"},
                                              {"\xC3", "\uFFFD"},
                                              {std::string(1, '\0'), "\uFFFD"},
                                              {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
                                              {"\uFFFF", "\uFFFD"}}};
    Text text;
    for (int i = dice.below(4); i > 0; --i) {
        auto const& piece = dice.oneOf(pieces);
        text.written += piece.written;
        text.read += piece.read;
    }
    return text;
}

Json randomNumber(Dice& dice) {
    switch (dice.below(4)) {
    case 0:
        return static_cast<std::int64_t>(dice.bits());
    case 1:
        return dice.bits();
    case 2:
        return std::numeric_limits<double>::infinity();
    default:
        return dice.below(1000) / 8.0;
    }
}

// A value, what must be read for it, and the deepest path into it.
struct Sample {
    Json written;
    Json read;
    int cost = 0;
};

Sample randomObject(Dice& dice, int levels, bool outermost);

Sample randomArray(Dice& dice, int levels);

Sample randomValue(Dice& dice, int levels) {
    switch (dice.below(levels > 0 ? 8 : 4)) {
    case 0:
        return {nullptr, nullptr};
    case 1:
        return {dice.below(2) == 0, {}};
    case 2: {
        auto const number = randomNumber(dice);
        return {number, number == std::numeric_limits<double>::infinity() ? Json() : number};
    }
    case 3: {
        auto const text = randomText(dice);
        return {text.written, text.read};
    }
    case 4:
    case 5:
        return randomArray(dice, levels - 1);
    default:
        return randomObject(dice, levels - 1, false);
    }
}

Sample booleanRead(Sample sample) {
    if (sample.written.is_boolean())
        sample.read = sample.written;
    return sample;
}

Sample randomArray(Dice& dice, int levels) {
    Sample array{Json::array(), Json::array()};
    for (int i = dice.below(4); i > 0; --i) {
        auto const element = booleanRead(randomValue(dice, levels));
        array.written.push_back(element.written);
        array.read.push_back(element.read);
        array.cost = std::max(array.cost, element.cost);
    }
    array.cost += 2;
    return array;
}

Sample randomObject(Dice& dice, int levels, bool outermost) {
    Sample object{Json::object(), Json::object()};
    std::map<std::string, std::pair<std::string, Sample>> members;
    for (int i = dice.below(5); i > 0; --i) {
        auto const key = randomText(dice);
        members.insert_or_assign(key.written, std::pair(key.read, booleanRead(randomValue(dice, levels))));
    }
    for (auto const& [key, member] : members)
        object.written[key] = member.second.written;
    for (auto const& [key, member] : members) {
        auto const& [readKey, value] = member;
        bool const repaired = readKey != key;
        if (repaired && (members.contains(readKey) || object.read.contains(readKey)))
            continue;
        bool const isTime = outermost && readKey == "seconds" && value.written.is_number();
        object.read[readKey] = isTime ? value.written : value.read;
        object.cost = std::max(object.cost, value.cost);
    }
    object.cost += 3;
    return object;
}

TEST(BusConversionsFuzz, ReadsBackWhatItWroteOfAnyValue) {
    Dice dice;
    RawBusPeer const peer;
    int tooDeep = 0;
    for (int round = 0; round < 10'000; ++round) {
        auto const sample = randomObject(dice, dice.below(60), true);
        auto const message = peer.makeSignal();
        auto const size = fcp::appendUserInfo(*message, sample.written);
        ASSERT_EQ(size.has_value(), sample.cost <= fcp::maximumPathCost) << "round " << round;
        if (!size) {
            ++tooDeep;
            continue;
        }
        RawBusPeer::seal(*message);
        ASSERT_EQ(fcp::readUserInfo(*message), sample.read) << "round " << round;
    }
    EXPECT_GT(tooDeep, 10) << "the dice never reached the limit";
}

// The same value in GLib's own terms, which marshals it without any of our code.
GVariant* asVariant(Json const& value) {
    switch (value.type()) {
    case Json::value_t::object: {
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
        for (auto const& [key, member] : value.get_ref<Json::object_t const&>())
            g_variant_builder_add(&builder, "{sv}", key.c_str(), asVariant(member));
        return g_variant_builder_end(&builder);
    }
    case Json::value_t::array: {
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE("av"));
        for (auto const& element : value)
            g_variant_builder_add(&builder, "v", asVariant(element));
        return g_variant_builder_end(&builder);
    }
    case Json::value_t::string:
        return g_variant_new_string(value.get_ref<std::string const&>().c_str());
    case Json::value_t::boolean:
        return g_variant_new_boolean(value.get<bool>() ? TRUE : FALSE);
    case Json::value_t::number_float:
        return g_variant_new_double(value.get<double>());
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return value > std::numeric_limits<std::int64_t>::max()
                   ? g_variant_new_uint64(value.get<std::uint64_t>())
                   : g_variant_new_int64(value.get<std::int64_t>());
    default:
        return g_variant_new_signature("");
    }
}

std::string marshalledByGLib(Json const& userInfo) {
    auto const message =
        GRef<GDBusMessage>::adopt(g_dbus_message_new_signal("/com/zelvix/fcp", "com.zelvix.fcp", "test"));
    g_dbus_message_set_serial(message.get(), 1);
    g_dbus_message_set_byte_order(message.get(), G_DBUS_MESSAGE_BYTE_ORDER_LITTLE_ENDIAN);
    g_dbus_message_set_body(message.get(), g_variant_new("(@a{sv})", asVariant(userInfo)));
    gsize size = 0;
    GError* error = nullptr;
    auto* const blob = g_dbus_message_to_blob(message.get(), &size, G_DBUS_CAPABILITY_FLAGS_NONE, &error);
    EXPECT_EQ(error, nullptr);
    std::unique_ptr<void, fcp::GDeleter> const owner(blob);
    return {static_cast<char const*>(owner.get()), size};
}

std::uint32_t bodySize(std::string const& message) {
    std::uint32_t size = 0;
    std::memcpy(&size, message.data() + 4, sizeof size);
    return size;
}

TEST(BusConversionsFuzz, CountsTheBytesThatGLibCounts) {
    Dice dice;
    RawBusPeer const peer;
    for (int round = 0; round < 3000; ++round) {
        auto const userInfo = randomObject(dice, 6, true).read;
        ASSERT_EQ(fcp::appendUserInfo(*peer.makeSignal(), userInfo), bodySize(marshalledByGLib(userInfo)))
            << userInfo;
    }
}

TEST(BusConversionsFuzz, ReadsWhatGLibWrote) {
    Dice dice;
    for (int round = 0; round < 300; ++round) {
        auto const userInfo = randomObject(dice, 6, false).read;
        RawBusPeer peer;
        ASSERT_TRUE(peer.receive(marshalledByGLib(userInfo), [&](sd_bus_message& message) {
            EXPECT_EQ(fcp::readUserInfo(message), userInfo);
        }));
    }
}

// Not every bus looks into the bodies that it passes on.
TEST(BusConversionsFuzz, MakesOnlyValidValuesOfCorruptedBodies) {
    Dice dice;
    int read = 0;
    int unreadable = 0;
    for (int round = 0; round < 10'000; ++round) {
        auto bytes = marshalledByGLib(randomObject(dice, 6, true).read);
        auto const size = static_cast<int>(bodySize(bytes));
        auto const start = bytes.size() - static_cast<std::size_t>(size);
        for (int i = dice.below(3); i >= 0; --i)
            bytes[start + static_cast<std::size_t>(dice.below(size))] = static_cast<char>(dice.bits());
        RawBusPeer peer;
        (void)peer.receive(bytes, [&](sd_bus_message& message) {
            auto const userInfo = fcp::readUserInfo(message);
            ++(userInfo ? read : unreadable);
            if (userInfo) {
                ASSERT_TRUE(userInfo->is_object());
                ASSERT_NO_THROW((void)userInfo->dump()) << "text that is not UTF-8";
            }
        });
    }
    EXPECT_GT(read, 100);
    EXPECT_GT(unreadable, 100);
}

} // namespace

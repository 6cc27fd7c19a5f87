#include "Platform/Cocoa/Conversions.h"

#include "FcpExtension/EntranceRules.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <utility>
#include <vector>

namespace fcp {

namespace {

constexpr unichar replacement = 0xFFFD;

constexpr bool isHighSurrogate(unichar unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLowSurrogate(unichar unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

RetainPtr<NSString*> withoutLoneSurrogates(NSString* text) {
    std::vector<unichar> units([text length]);
    [text getCharacters:units.data() range:NSMakeRange(0, units.size())];
    for (std::size_t at = 0; at < units.size(); ++at) {
        bool const isPair =
            isHighSurrogate(units[at]) && at + 1 < units.size() && isLowSurrogate(units[at + 1]);
        if (isPair)
            ++at;
        else if (isHighSurrogate(units[at]) || isLowSurrogate(units[at]))
            units[at] = replacement;
    }
    return RetainPtr<NSString*>::adopt([[NSString alloc] initWithCharacters:units.data()
                                                                     length:units.size()]);
}

NSData* utf8(NSString* text) {
    return [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:NO];
}

// Nil for bytes that are not UTF-8.
RetainPtr<NSString*> makeStrictString(std::string const& text) {
    return RetainPtr<NSString*>::adopt([[NSString alloc] initWithBytes:text.data()
                                                                length:text.size()
                                                              encoding:NSUTF8StringEncoding]);
}

// The text that a page's own JSON has for a date; null for one beyond the dates that a page knows.
Json dateText(NSDate* date) {
    constexpr double lastDay = 8.64e15;
    double const milliseconds = std::round([date timeIntervalSince1970] * 1000);
    if (!(std::abs(milliseconds) <= lastDay))
        return nullptr;
    double const wholeSeconds = std::floor(milliseconds / 1000);
    auto const seconds = static_cast<std::time_t>(wholeSeconds);
    std::tm fields{};
    if (!gmtime_r(&seconds, &fields))
        return nullptr;
    auto const year = static_cast<long>(fields.tm_year) + 1900;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), year < 0 || year > 9999 ? "%+07ld" : "%04ld", year);
    std::string result = text.data();
    std::snprintf(text.data(), text.size(), "-%02d-%02dT%02d:%02d:%02d.%03dZ", fields.tm_mon + 1,
                  fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec,
                  static_cast<int>(milliseconds - wholeSeconds * 1000));
    return result + text.data();
}

bool isBoolean(NSNumber* number) {
    return [number isKindOfClass:[[NSNumber numberWithBool:YES] class]];
}

bool isReal(NSNumber* number) {
    char const type = *[number objCType];
    return type == 'd' || type == 'f';
}

Json integer(NSNumber* number) {
    if (*[number objCType] == 'Q')
        return std::uint64_t{[number unsignedLongLongValue]};
    return std::int64_t{[number longLongValue]};
}

// A page has one kind of number; its JSON writes those without a fraction as integers.
Json pageNumber(double number) {
    constexpr double signedEnd = 9223372036854775808.0; // 2^63
    constexpr double unsignedEnd = 18446744073709551616.0; // 2^64
    if (std::trunc(number) != number || number < -signedEnd || number >= unsignedEnd)
        return number;
    if (number < signedEnd)
        return static_cast<std::int64_t>(number);
    return static_cast<std::uint64_t>(number);
}

enum class Origin { Page, Notification };

// Reads values that are nested no deeper than the rules allow. An operation answers none where there is no
// JSON form; `isTooDeep` then tells whether it is the whole value that cannot be read.
class Reader {
public:
    explicit Reader(Origin origin)
        : source(origin) {}

    [[nodiscard]] std::optional<Json> outermost(id value) {
        auto result = dictionary(value);
        return isTooDeep ? std::nullopt : std::move(result);
    }

private:
    [[nodiscard]] std::optional<Json> value(id value) {
        if ([value isKindOfClass:[NSString class]])
            return readString(value);
        if ([value isKindOfClass:[NSNumber class]])
            return number(value);
        if ([value isKindOfClass:[NSNull class]])
            return Json(nullptr);
        if ([value isKindOfClass:[NSDate class]])
            return dateText(value);
        if ([value isKindOfClass:[NSDictionary class]])
            return dictionary(value);
        if ([value isKindOfClass:[NSArray class]])
            return array(value);
        return std::nullopt;
    }

    [[nodiscard]] Json number(NSNumber* number) const {
        if (isBoolean(number))
            return static_cast<bool>([number boolValue]);
        if (!isReal(number))
            return integer(number);
        double const real = [number doubleValue];
        return source == Origin::Page ? pageNumber(real) : Json(real);
    }

    [[nodiscard]] std::optional<Json> dictionary(NSDictionary* members) {
        if (!enter())
            return std::nullopt;
        auto result = Json::object();
        for (id key in members) {
            if (![key isKindOfClass:[NSString class]])
                continue;
            auto member = value([members objectForKey:key]);
            if (isTooDeep)
                return std::nullopt;
            addMember(result, readString(key).value_or(""), std::move(member),
                      depth == 1 ? ObjectPlace::Outermost : ObjectPlace::Nested);
        }
        --depth;
        return result;
    }

    [[nodiscard]] std::optional<Json> array(NSArray* elements) {
        if (!enter())
            return std::nullopt;
        auto result = Json::array();
        for (id element in elements) {
            auto read = value(element);
            if (isTooDeep)
                return std::nullopt;
            addElement(result, std::move(read));
        }
        --depth;
        return result;
    }

    [[nodiscard]] bool enter() {
        isTooDeep = isTooDeep || ++depth > maximumNesting;
        return !isTooDeep;
    }

    Origin source;
    int depth = 0;
    bool isTooDeep = false;
};

RetainPtr<id> makeValue(Json const& value);

RetainPtr<NSDictionary*> makeDictionary(Json::object_t const& members) {
    auto const result = RetainPtr<NSMutableDictionary*>::adopt([[NSMutableDictionary alloc] init]);
    for (auto const& [name, member] : members) {
        if (auto const value = makeValue(member))
            [result.get() setObject:value.get() forKey:makeString(name).get()];
    }
    return RetainPtr<NSDictionary*>::retain(result.get());
}

RetainPtr<NSArray*> makeArray(Json::array_t const& elements) {
    auto const result = RetainPtr<NSMutableArray*>::adopt([[NSMutableArray alloc] init]);
    for (auto const& element : elements) {
        if (auto const value = makeValue(element))
            [result.get() addObject:value.get()];
    }
    return RetainPtr<NSArray*>::retain(result.get());
}

// Nil for null, which no property list holds: the one place where it is left out.
RetainPtr<id> makeValue(Json const& value) {
    switch (value.type()) {
    case Json::value_t::object:
        return RetainPtr<id>::retain(makeDictionary(value.get_ref<Json::object_t const&>()).get());
    case Json::value_t::array:
        return RetainPtr<id>::retain(makeArray(value.get_ref<Json::array_t const&>()).get());
    case Json::value_t::string:
        return RetainPtr<id>::retain(makeString(value.get_ref<std::string const&>()).get());
    case Json::value_t::boolean:
        return RetainPtr<id>::adopt([[NSNumber alloc] initWithBool:value.get<bool>() ? YES : NO]);
    case Json::value_t::number_integer:
        return RetainPtr<id>::adopt([[NSNumber alloc] initWithLongLong:value.get<std::int64_t>()]);
    case Json::value_t::number_unsigned:
        return RetainPtr<id>::adopt([[NSNumber alloc] initWithUnsignedLongLong:value.get<std::uint64_t>()]);
    case Json::value_t::number_float:
        return RetainPtr<id>::adopt([[NSNumber alloc] initWithDouble:value.get<double>()]);
    case Json::value_t::null:
    case Json::value_t::binary:
    case Json::value_t::discarded:
        break;
    }
    return {};
}

} // namespace

RetainPtr<NSString*> makeString(std::string const& text) {
    if (auto const string = makeStrictString(text))
        return string;
    // The writer of JSON knows how to replace what is not UTF-8.
    auto const quoted = Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    return makeStrictString(Json::parse(quoted, nullptr, false).get_ref<std::string const&>());
}

std::optional<std::string> readString(NSString* text) {
    if (!text)
        return std::nullopt;
    @autoreleasepool {
        auto* data = utf8(text);
        // A lossy conversion would drop lone surrogates on some systems.
        if (!data)
            data = utf8(withoutLoneSurrogates(text).get());
        return std::string(static_cast<char const*>([data bytes]), [data length]);
    }
}

std::optional<Json> messageBody(id body) {
    if (![body isKindOfClass:[NSDictionary class]])
        return std::nullopt;
    return Reader(Origin::Page).outermost(body);
}

RetainPtr<NSDictionary*> makeUserInfo(Json const& userInfo) {
    if (!userInfo.is_object())
        return {};
    return makeDictionary(userInfo.get_ref<Json::object_t const&>());
}

std::optional<Json> readUserInfo(NSDictionary* userInfo) {
    if (!userInfo)
        return std::nullopt;
    return Reader(Origin::Notification).outermost(userInfo);
}

std::optional<Url> parseUrl(std::string const& text) {
    if (!mayBeAddress(text))
        return std::nullopt;
    @autoreleasepool {
        auto* const url = [NSURL URLWithString:makeString(text).get()];
        if (![url scheme])
            return std::nullopt;
        return readAddress(text, readString([url host]).value_or(""));
    }
}

RetainPtr<NSURL*> makeUrl(Url const& url) {
    return RetainPtr<NSURL*>::retain([NSURL URLWithString:makeString(url.absoluteString).get()]);
}

std::optional<Url> readUrl(NSURL* url) {
    if (!url)
        return std::nullopt;
    @autoreleasepool {
        return readAddress(readString([url absoluteString]).value_or(""),
                           readString([url host]).value_or(""));
    }
}

NavigationError readError(NSError* error) {
    @autoreleasepool {
        return {readString([error domain]).value_or(""), [error code],
                readString([error localizedDescription]).value_or("")};
    }
}

::CMTime makeMediaTime(CMTime time) {
    return {time.value, time.timescale, time.flags, time.epoch};
}

CMTime readMediaTime(::CMTime time) {
    return {time.value, time.timescale, time.flags, time.epoch};
}

} // namespace fcp

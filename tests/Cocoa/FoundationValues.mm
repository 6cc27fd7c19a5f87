#include "Cocoa/FoundationValues.h"

#include "Platform/Cocoa/Conversions.h"

#include <limits>

namespace fcp::test {

namespace {

// Unit by unit, because GNUstep makes no string of several units of which one is a lone surrogate.
NSString* fromCharacters(std::u16string const& units) {
    NSMutableString* const text = [NSMutableString string];
    for (auto const unit : units)
        [text appendFormat:@"%C", static_cast<unichar>(unit)];
    return text;
}

NSNumber* real(double value) {
    return [NSNumber numberWithDouble:value];
}

NSDate* date(double secondsSince1970) {
    return [NSDate dateWithTimeIntervalSince1970:secondsSince1970];
}

NSDictionary* numbers() {
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    return @{
        @"booleans" : @{@"t" : [NSNumber numberWithBool:YES], @"f" : [NSNumber numberWithBool:NO]},
        @"zero and one" : @{@"i" : [NSNumber numberWithInt:1], @"c" : [NSNumber numberWithChar:0]},
        @"integers" : @{
            @"low" : [NSNumber numberWithLongLong:std::numeric_limits<long long>::min()],
            @"high" : [NSNumber numberWithUnsignedLongLong:std::numeric_limits<unsigned long long>::max()]
        },
        @"a whole real" : @{@"a" : real(2), @"b" : real(-0.0), @"c" : real(1e15)},
        @"a large whole real" : @{@"a" : real(9223372036854775808.0)},
        @"a huge real" : @{@"a" : real(1e300), @"b" : real(-1e300), @"c" : real(18446744073709551616.0)},
        @"reals" : @{@"a" : real(0.5), @"b" : [NSNumber numberWithFloat:0.25F]},
        @"not finite" : @{@"a" : real(std::nan("")), @"b" : @[ real(infinity), real(-infinity) ]},
        @"not finite times" : @{@"seconds" : real(infinity), @"threshold" : real(-infinity)},
        @"not finite times further in" : @{@"config" : @{@"seconds" : real(infinity)}},
    };
}

NSDictionary* dates() {
    return @{
        @"a date" : @{@"a" : date(0), @"b" : date(1700000000.123)},
        @"a date before 1970" : @{@"a" : date(-0.5), @"b" : date(-62135596800.0)},
        @"a date far away" : @{@"a" : date(253402300800.0), @"b" : date(-62167219201.0)},
        @"a date that is none" : @{@"a" : date(1e18), @"b" : date(-1e18)},
    };
}

NSDictionary* structures() {
    return @{
        @"nothing in it" : @{},
        @"null" : @{@"a" : [NSNull null], @"b" : @[ [NSNull null], @"x" ]},
        @"mixed" : @{@"a" : @[ @1, @"b", @[ [NSNumber numberWithBool:YES], @{} ],
                               @{@"c" : @[]} ]},
        @"keys that are no text" : @{@1 : @"one", [NSNull null] : @"null", @"a" : @1},
        @"no JSON form" : @{@"d" : [NSData data], @"a" : @[ [NSData data], @1 ], @"n" : [NSObject class]},
        @"lone surrogates" : @{
            fromCharacters(u"k\xd83d") : fromCharacters(u"x\xd83dy"),
        },
        @"a text" : @"text",
        @"a number" : @1,
        @"a boolean" : [NSNumber numberWithBool:YES],
        @"null alone" : [NSNull null],
        @"an array" : @[ @{@"command" : @"x"} ],
        @"a date alone" : date(0),
    };
}

NSDictionary* values() {
    auto* const all = [NSMutableDictionary dictionary];
    for (NSDictionary* part in @[ numbers(), dates(), structures() ])
        [all addEntriesFromDictionary:part];
    return all;
}

id valueNamed(std::string const& name) {
    return [values() objectForKey:makeString(name).get()];
}

NSDictionary* nested(Nesting nesting, int levels) {
    id value = @1;
    for (int level = levels; level > 1; --level) {
        bool const isArray = nesting == Nesting::Arrays || (nesting == Nesting::Both && level % 2 == 0);
        value = isArray ? static_cast<id>(@[ value ]) : @{@"a" : value};
    }
    return @{@"a" : value};
}

} // namespace

std::vector<std::string> valueNames() {
    std::vector<std::string> names;
    for (NSString* name in values())
        names.push_back(readString(name).value());
    return names;
}

std::optional<Json> bodyOf(std::string const& name) {
    return messageBody(valueNamed(name));
}

std::optional<Json> userInfoOf(std::string const& name) {
    id const value = valueNamed(name);
    return [value isKindOfClass:[NSDictionary class]] ? readUserInfo(value) : std::nullopt;
}

std::optional<Json> nestedBody(Nesting nesting, int levels) {
    return messageBody(nested(nesting, levels));
}

std::optional<Json> nestedUserInfo(Nesting nesting, int levels) {
    return readUserInfo(nested(nesting, levels));
}

std::optional<Json> cyclicBody() {
    auto const cycle = RetainPtr<NSMutableDictionary*>::adopt([[NSMutableDictionary alloc] init]);
    [cycle.get() setObject:@[ cycle.get(), cycle.get() ] forKey:@"a"];
    auto body = messageBody(cycle.get());
    [cycle.get() removeAllObjects];
    return body;
}

std::string throughString(std::string const& text) {
    return readString(makeString(text).get()).value();
}

std::optional<Json> throughUserInfo(Json const& userInfo) {
    return readUserInfo(makeUserInfo(userInfo).get());
}

std::string fromUnits(std::u16string const& units) {
    return readString(fromCharacters(units)).value();
}

bool readsNilAsNone() {
    return !readString(nil) && !messageBody(nil) && !readUserInfo(nil);
}

} // namespace fcp::test

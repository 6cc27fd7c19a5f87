#pragma once

#include "FcpExtension/ProExtensionHost.h"
#include "Platform/Cocoa/RetainPtr.h"
#include "Ports/Json.h"
#include "Ports/Url.h"
#include "Ports/WebView.h"

#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace fcp {

// Nothing here raises or throws. Any thread that owns the values.

// Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] RetainPtr<NSString*> makeString(std::string const& text);

// Lone surrogates become U+FFFD, NUL stays. None for nil.
[[nodiscard]] std::optional<std::string> readString(NSString* text);

// The body of a message that a page posted, cleaned: an object, every text valid UTF-8, at most 512 levels
// deep. A number that is not finite stays what it is in "seconds" and "threshold" and is null elsewhere; a
// whole number is an integer, as in the page's own JSON; a date is that JSON's text. What has no JSON form is
// left out of an object and null in an array. None for every other kind of value, and for a cyclic one.
[[nodiscard]] std::optional<Json> messageBody(id body);

// A notification's user info: property-list types alone, without members and elements that are null, at any
// depth. Nil unless `userInfo` is an object.
[[nodiscard]] RetainPtr<NSDictionary*> makeUserInfo(Json const& userInfo);

// Reads like a message body, except that integers and other numbers stay themselves. None for nil.
[[nodiscard]] std::optional<Json> readUserInfo(NSDictionary* userInfo);

// The text stays as it is given. None when it makes no absolute address.
[[nodiscard]] std::optional<Url> parseUrl(std::string const& text);

// Nil when the address is none after all.
[[nodiscard]] RetainPtr<NSURL*> makeUrl(Url const& url);

// None for nil.
[[nodiscard]] std::optional<Url> readUrl(NSURL* url);

[[nodiscard]] NavigationError readError(NSError* error);

[[nodiscard]] ::CMTime makeMediaTime(CMTime time);
[[nodiscard]] CMTime readMediaTime(::CMTime time);

} // namespace fcp

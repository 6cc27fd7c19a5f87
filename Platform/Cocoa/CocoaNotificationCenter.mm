#include "Platform/Cocoa/CocoaNotificationCenter.h"

#include "Platform/Cocoa/Conversions.h"

namespace fcp {

namespace {

Notification readNotification(NSNotification* notification) {
    id const sender = [notification object];
    return {readString([notification name]).value_or(""),
            [sender isKindOfClass:[NSString class]] ? readString(sender) : std::nullopt,
            readUserInfo([notification userInfo])};
}

} // namespace

void CocoaNotificationCenter::post(std::string const& name, Json const& userInfo) {
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:makeString(name).get()
                                                                   object:nil
                                                                 userInfo:makeUserInfo(userInfo).get()
                                                       deliverImmediately:YES];
}

void CocoaNotificationCenter::observe(std::string const& name,
                                      std::function<void(Notification const&)> observer) {
    // The token that comes back would serve to remove the observer, which lasts as long as the process.
    [[NSDistributedNotificationCenter defaultCenter] addObserverForName:makeString(name).get()
                                                                 object:nil
                                                                  queue:[NSOperationQueue mainQueue]
                                                             usingBlock:^(NSNotification* notification) {
                                                               observer(readNotification(notification));
                                                             }];
}

} // namespace fcp

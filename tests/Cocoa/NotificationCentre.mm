#include "Cocoa/NotificationCentre.h"

#include "Platform/Cocoa/Conversions.h"

using fcp::RetainPtr;

@interface RecordingCentre : NSNotificationCenter
- (void)postNotificationName:(NSString*)name
                      object:(NSString*)object
                    userInfo:(NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end

namespace {

RetainPtr<RecordingCentre*> centre;
std::vector<fcp::test::Post> recordedPosts;
int anySender = 0;

RetainPtr<NSDictionary*> carried(NSDictionary* userInfo) {
    NSData* const bytes = [NSPropertyListSerialization dataWithPropertyList:userInfo
                                                                     format:NSPropertyListXMLFormat_v1_0
                                                                    options:0
                                                                      error:nullptr];
    return RetainPtr<NSDictionary*>::retain([NSPropertyListSerialization propertyListWithData:bytes
                                                                                      options:0
                                                                                       format:nullptr
                                                                                        error:nullptr]);
}

} // namespace

@implementation RecordingCentre

- (void)postNotificationName:(NSString*)name
                      object:(NSString*)object
                    userInfo:(NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately {
    bool const isPropertyList =
        userInfo && [NSPropertyListSerialization propertyList:userInfo
                                             isValidForFormat:NSPropertyListXMLFormat_v1_0];
    recordedPosts.push_back({fcp::readString(name).value_or(""), object != nil, userInfo != nil,
                             isPropertyList, deliverImmediately != NO});
    [self postNotificationName:name object:object userInfo:isPropertyList ? carried(userInfo).get() : nil];
}

- (id)addObserverForName:(NSString*)name
                  object:(id)object
                   queue:(NSOperationQueue*)queue
              usingBlock:(GSNotificationBlock)block {
    anySender += object ? 0 : 1;
    return [super addObserverForName:name object:object queue:queue usingBlock:block];
}

@end

@implementation NSDistributedNotificationCenter (RecordingCentre)

+ (id)defaultCenter {
    return centre.get();
}

@end

namespace fcp::test {

void renewNotificationCentre() {
    centre = RetainPtr<RecordingCentre*>::adopt([[RecordingCentre alloc] init]);
    recordedPosts.clear();
    anySender = 0;
}

std::vector<Post> const& posts() {
    return recordedPosts;
}

int observersOfAnySender() {
    return anySender;
}

void postWithoutUserInfo(std::string const& name, std::string const& object) {
    [centre.get() postNotificationName:makeString(name).get() object:makeString(object).get() userInfo:nil];
}

void postOddUserInfo(std::string const& name) {
    [centre.get() postNotificationName:makeString(name).get()
                                object:[NSNumber numberWithInt:3]
                              userInfo:@{
                                  @"requestId" : @"req-1-000000",
                                  @7 : @"no text as a key",
                                  @"result" : [NSNull null],
                                  @"bytes" : [NSData data],
                                  @"list" : @[ [NSData data], [NSNull null], @1 ],
                              }];
}

} // namespace fcp::test

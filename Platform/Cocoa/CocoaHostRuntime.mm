#include "Platform/Cocoa/CocoaHostRuntime.h"

#include "FcpExtension/ProExtensionHost.h"
#include "Platform/Cocoa/Conversions.h"
#include "Platform/Cocoa/HostProtocols.h"

#include <dlfcn.h>

#include <map>
#include <utility>

// What the host holds for an observer of ours, under its own rules of ownership. Called on the host's
// threads, which need not have a pool.
@interface FcpTimelineObserver : NSObject <FCPXTimelineObserver> {
    std::shared_ptr<fcp::FCPXTimelineObserver> observer;
}
- (instancetype)initWithObserver:(std::shared_ptr<fcp::FCPXTimelineObserver>)panelsObserver;
@end

@implementation FcpTimelineObserver

- (instancetype)initWithObserver:(std::shared_ptr<fcp::FCPXTimelineObserver>)panelsObserver {
    if ((self = [super init]))
        observer = std::move(panelsObserver);
    return self;
}

- (void)playheadTimeChanged {
    @autoreleasepool {
        observer->playheadTimeChanged();
    }
}

- (void)activeSequenceChanged {
    @autoreleasepool {
        observer->activeSequenceChanged();
    }
}

@end

namespace fcp {

namespace {

// One object of the host's kind for each observer of ours, so that "remove:" names what "add:" named. Main
// thread only.
class TimelineObservers {
public:
    [[nodiscard]] RetainPtr<FcpTimelineObserver*>
    objectFor(std::shared_ptr<FCPXTimelineObserver> const& observer) {
        auto& object = objects[observer.get()];
        if (!object)
            object = RetainPtr<FcpTimelineObserver*>::adopt(
                [[FcpTimelineObserver alloc] initWithObserver:observer]);
        return object;
    }

    void forget(FCPXTimelineObserver const& observer) { objects.erase(&observer); }

private:
    std::map<FCPXTimelineObserver const*, RetainPtr<FcpTimelineObserver*>> objects;
};

class CocoaSequence final : public FCPXSequence {
public:
    explicit CocoaSequence(FCPXSequenceObject hostsSequence)
        : sequence(RetainPtr<FCPXSequenceObject>::retain(hostsSequence)) {}

    [[nodiscard]] std::optional<std::string> name() const override {
        return readString([sequence.get() name]);
    }

    [[nodiscard]] CMTime duration() const override { return readMediaTime([sequence.get() duration]); }

    [[nodiscard]] CMTime frameDuration() const override {
        return readMediaTime([sequence.get() frameDuration]);
    }

    [[nodiscard]] CMTime start() const override { return readMediaTime([sequence.get() start]); }

private:
    RetainPtr<FCPXSequenceObject> const sequence;
};

class CocoaTimeline final : public FCPXTimeline {
public:
    CocoaTimeline(FCPXTimelineObject hostsTimeline, std::shared_ptr<TimelineObservers> hostsObservers)
        : timeline(RetainPtr<FCPXTimelineObject>::retain(hostsTimeline))
        , observers(std::move(hostsObservers)) {}

    [[nodiscard]] CMTime playheadTime() const override {
        return readMediaTime([timeline.get() playheadTime]);
    }

    void movePlayheadTo(CMTime time) override { [timeline.get() movePlayheadTo:makeMediaTime(time)]; }

    [[nodiscard]] std::shared_ptr<FCPXSequence> activeSequence() const override {
        FCPXSequenceObject const sequence = [timeline.get() activeSequence];
        return sequence ? std::make_shared<CocoaSequence>(sequence) : nullptr;
    }

    void add(std::shared_ptr<FCPXTimelineObserver> observer) override {
        [timeline.get() add:observers->objectFor(observer).get()];
    }

    void remove(std::shared_ptr<FCPXTimelineObserver> observer) override {
        [timeline.get() remove:observers->objectFor(observer).get()];
        observers->forget(*observer);
    }

private:
    RetainPtr<FCPXTimelineObject> const timeline;
    std::shared_ptr<TimelineObservers> const observers;
};

class CocoaHost final : public FCPXHost {
public:
    explicit CocoaHost(FCPXHostObject hostsObject)
        : host(RetainPtr<FCPXHostObject>::retain(hostsObject)) {}

    [[nodiscard]] std::shared_ptr<FCPXTimeline> timeline() const override {
        FCPXTimelineObject const timeline = [host.get() timeline];
        return timeline ? std::make_shared<CocoaTimeline>(timeline, observers) : nullptr;
    }

private:
    RetainPtr<FCPXHostObject> const host;
    std::shared_ptr<TimelineObservers> const observers = std::make_shared<TimelineObservers>();
};

} // namespace

std::shared_ptr<FCPXHost> CocoaHostRuntime::proExtensionHostSingleton() {
    auto const singleton = reinterpret_cast<id (*)()>(dlsym(RTLD_DEFAULT, hostSymbol));
    FCPXHostObject const host = singleton ? singleton() : nil;
    return host ? std::make_shared<CocoaHost>(host) : nullptr;
}

} // namespace fcp

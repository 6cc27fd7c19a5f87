#include "Cocoa/HostObjects.h"

#include "Platform/Cocoa/Conversions.h"

using fcp::RetainPtr;

// Nothing here knows the panel's protocols: a host does not conform to them, it answers.

namespace {

fcp::test::Journal* journal = nullptr;

void note(char const* line) {
    if (journal)
        journal->note(line);
}

} // namespace

@interface TestSequence : NSObject {
@public
    RetainPtr<NSString*> sequenceName;
    CMTime length;
    CMTime frame;
}
@end

@implementation TestSequence

- (NSString*)name {
    note("sequence name");
    return sequenceName.get();
}

- (CMTime)duration {
    note("sequence duration");
    return length;
}

- (CMTime)frameDuration {
    note("sequence frameDuration");
    return frame;
}

- (CMTime)start {
    note("sequence start");
    return length;
}

- (void)dealloc {
    note("sequence dealloc");
    [super dealloc];
}

@end

@interface TestTimeline : NSObject {
@public
    RetainPtr<TestSequence*> sequence;
    RetainPtr<NSMutableArray*> observers;
    CMTime playhead;
    CMTime movedTo;
    id lastAdded;
    id lastRemoved;
}
@end

@implementation TestTimeline

- (CMTime)playheadTime {
    note("timeline playheadTime");
    return playhead;
}

- (void)movePlayheadTo:(CMTime)time {
    note("timeline movePlayheadTo:");
    movedTo = time;
}

- (id)activeSequence {
    note("timeline activeSequence");
    return sequence.get();
}

- (void)add:(id)observer {
    note("timeline add:");
    lastAdded = observer;
    [observers.get() addObject:observer];
}

- (void)remove:(id)observer {
    note("timeline remove:");
    lastRemoved = observer;
    [observers.get() removeObjectIdenticalTo:observer];
}

- (void)dealloc {
    note("timeline dealloc");
    [super dealloc];
}

@end

@interface TestHost : NSObject {
@public
    RetainPtr<TestTimeline*> current;
}
@end

@implementation TestHost

- (id)timeline {
    note("host timeline");
    return current.get();
}

- (void)dealloc {
    note("host dealloc");
    [super dealloc];
}

@end

namespace {

RetainPtr<TestHost*> exportedHost;
RetainPtr<NSArray*> kept;

RetainPtr<TestTimeline*> makeTimeline() {
    auto const timeline = RetainPtr<TestTimeline*>::adopt([[TestTimeline alloc] init]);
    timeline.get()->observers = RetainPtr<NSMutableArray*>::adopt([[NSMutableArray alloc] init]);
    return timeline;
}

TestTimeline* timeline() {
    return exportedHost.get()->current.get();
}

} // namespace

// Its exported name stands in a label, because a header for hosts of another kind declares a function of that
// name.
extern "C" __attribute__((visibility("default"))) id exportHost() __asm__("ProExtensionHostSingleton");

id exportHost() {
    note("host singleton");
    return exportedHost.get();
}

namespace fcp::test {

HostObjects::HostObjects() {
    ::journal = &journal;
    exportedHost = RetainPtr<TestHost*>::adopt([[TestHost alloc] init]);
    exportedHost.get()->current = makeTimeline();
    timeline()->sequence = RetainPtr<TestSequence*>::adopt([[TestSequence alloc] init]);
    setName("Interview");
}

HostObjects::~HostObjects() {
    ::journal = nullptr;
    kept.reset();
    exportedHost.reset();
}

void HostObjects::dropHost() {
    exportedHost.reset();
}

void HostObjects::dropTimeline() {
    exportedHost.get()->current.reset();
}

void HostObjects::dropSequence() {
    timeline()->sequence.reset();
}

void HostObjects::renewTimeline() {
    exportedHost.get()->current = makeTimeline();
}

void HostObjects::setPlayhead(CMTime time) {
    timeline()->playhead = makeMediaTime(time);
}

void HostObjects::setDurations(CMTime duration, CMTime frameDuration) {
    timeline()->sequence.get()->length = makeMediaTime(duration);
    timeline()->sequence.get()->frame = makeMediaTime(frameDuration);
}

void HostObjects::setName(std::optional<std::string> const& name) {
    timeline()->sequence.get()->sequenceName = name ? makeString(*name) : RetainPtr<NSString*>();
}

CMTime HostObjects::movedTo() const {
    return readMediaTime(timeline()->movedTo);
}

int HostObjects::observers() const {
    return static_cast<int>([timeline()->observers.get() count]);
}

bool HostObjects::removedWhatWasAdded() const {
    return timeline()->lastAdded && timeline()->lastAdded == timeline()->lastRemoved;
}

void HostObjects::keepObservers() {
    kept = RetainPtr<NSArray*>::adopt([timeline()->observers.get() copy]);
}

void HostObjects::notifyPlayhead() {
    for (id observer in kept.get())
        [observer performSelector:@selector(playheadTimeChanged)];
}

void HostObjects::notifySequence() {
    for (id observer in kept.get())
        [observer performSelector:@selector(activeSequenceChanged)];
}

} // namespace fcp::test

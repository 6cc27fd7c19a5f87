#pragma once

#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>

// The host editor's objects as the panel sends messages to them. Whatever the host returns is taken to answer
// these: nothing is asked whether it conforms. A result type that differs from the host's own corrupts
// memory, so names and types here are the contract with the host.

@protocol FCPXTimelineObserver <NSObject>
@optional
- (void)playheadTimeChanged;
- (void)activeSequenceChanged;
@end

@protocol FCPXSequence <NSObject>
@property(nonatomic, readonly) NSString* name;
@property(nonatomic, readonly) CMTime duration;
@property(nonatomic, readonly) CMTime frameDuration;
// Part of the contract, never sent.
@property(nonatomic, readonly) CMTime start;
@end

@protocol FCPXTimeline <NSObject>
- (CMTime)playheadTime;
- (void)movePlayheadTo:(CMTime)time;
@property(nonatomic, readonly) id<FCPXSequence> activeSequence;
// One word each: the host answers to these short names.
- (void)add:(id<FCPXTimelineObserver>)observer;
- (void)remove:(id<FCPXTimelineObserver>)observer;
@end

@protocol FCPXHost <NSObject>
@property(nonatomic, readonly) id<FCPXTimeline> timeline;
@end

// For code in the panel's namespace, where the bare names mean the panel's own classes.
using FCPXHostObject = id<FCPXHost>;
using FCPXTimelineObject = id<FCPXTimeline>;
using FCPXSequenceObject = id<FCPXSequence>;

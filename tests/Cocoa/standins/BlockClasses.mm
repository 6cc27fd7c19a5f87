#import <Foundation/Foundation.h>

#include <Block.h>

// Makes blocks objects, which Foundation retains and releases like others. The compiler names the classes of
// blocks by data symbols; these become other names of the classes below.

@interface StandinBlock : NSObject
@end

@implementation StandinBlock

- (id)copyWithZone:(NSZone*)zone {
    (void)zone;
    return static_cast<id>(Block_copy(self));
}

- (id)copy {
    return static_cast<id>(Block_copy(self));
}

- (id)retain {
    return static_cast<id>(Block_copy(self));
}

- (oneway void)release {
    Block_release(self);
}

@end

@interface StandinStackBlock : StandinBlock
@end

@implementation StandinStackBlock
@end

@interface StandinGlobalBlock : StandinBlock
@end

@implementation StandinGlobalBlock
@end

@interface StandinMallocBlock : StandinBlock
@end

@implementation StandinMallocBlock
@end

__asm__(".globl _NSConcreteStackBlock\n"
        ".set _NSConcreteStackBlock, _OBJC_CLASS_StandinStackBlock\n"
        ".globl _NSConcreteGlobalBlock\n"
        ".set _NSConcreteGlobalBlock, _OBJC_CLASS_StandinGlobalBlock\n"
        ".globl _NSConcreteMallocBlock\n"
        ".set _NSConcreteMallocBlock, _OBJC_CLASS_StandinMallocBlock\n");

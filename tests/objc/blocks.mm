// What clang's block ABI asks of a runtime. GNUstep's own copies no C++ captures and lacks the global class.
#import <Foundation/Foundation.h>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <objc/blocks_runtime.h>

namespace {

enum Flags : int {
  kCountMask = 0xfffe,  // in steps of two
  kIsOnHeap = 1 << 24,
  kHasHelpers = 1 << 25,
  kIsGlobal = 1 << 28,
};
enum FieldKind : int { kObject = 3, kBlock = 7, kByReference = 8 };

struct Descriptor {
  unsigned long reserved;
  unsigned long size;
  void (*copy)(void* to, const void* from);
  void (*dispose)(const void* block);
};

struct Block {
  void* isa;
  int flags;
  int reserved;
  void (*invoke)();
  const Descriptor* descriptor;
};

// A __block variable; it moves to the heap with the first block that is copied.
struct ByReference {
  void* isa;
  ByReference* forwarding;
  int flags;
  unsigned size;
  void (*copy)(void* to, const void* from);
  void (*dispose)(const void* variable);
};

int add(int& flags, int steps) { return std::atomic_ref(flags).fetch_add(steps) + steps; }

ByReference* retained(ByReference* variable) {
  ByReference* original = variable->forwarding;
  if ((original->flags & kIsOnHeap) != 0) {
    add(original->flags, 2);
    return original;
  }
  auto* onHeap = static_cast<ByReference*>(std::malloc(original->size));
  std::memcpy(onHeap, original, original->size);
  // One owner is the block that is being copied, the other the frame that declared the variable.
  onHeap->flags = original->flags | kIsOnHeap | 4;
  onHeap->forwarding = onHeap;
  if ((original->flags & kHasHelpers) != 0) original->copy(onHeap, original);
  original->forwarding = onHeap;
  return onHeap;
}

void release(ByReference* variable) {
  ByReference* held = variable->forwarding;
  if ((held->flags & kIsOnHeap) == 0 || (add(held->flags, -2) & kCountMask) != 0) return;
  if ((held->flags & kHasHelpers) != 0) held->dispose(held);
  std::free(held);
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

void* _Block_copy(const void* source) {
  auto* block = static_cast<Block*>(const_cast<void*>(source));
  if (block == nullptr || (block->flags & kIsGlobal) != 0) return block;
  if ((block->flags & kIsOnHeap) != 0) {
    add(block->flags, 2);
    return block;
  }
  auto* copy = static_cast<Block*>(std::malloc(block->descriptor->size));
  std::memcpy(copy, block, block->descriptor->size);
  copy->flags = (block->flags & ~kCountMask) | kIsOnHeap | 2;
  if ((block->flags & kHasHelpers) != 0) block->descriptor->copy(copy, block);
  return copy;
}

void _Block_release(const void* released) {
  auto* block = static_cast<Block*>(const_cast<void*>(released));
  if (block == nullptr || (block->flags & kIsOnHeap) == 0) return;
  if ((add(block->flags, -2) & kCountMask) != 0) return;
  if ((block->flags & kHasHelpers) != 0) block->descriptor->dispose(block);
  std::free(block);
}

void _Block_object_assign(void* to, const void* from, const int kind) {
  void* object = const_cast<void*>(from);
  if ((kind & kByReference) != 0)
    object = retained(static_cast<ByReference*>(object));
  else if ((kind & kBlock) == kBlock)
    object = _Block_copy(from);
  else if (kind == kObject)
    [static_cast<id>(object) retain];
  std::memcpy(to, &object, sizeof object);
}

void _Block_object_dispose(const void* held, const int kind) {
  void* object = const_cast<void*>(held);
  if ((kind & kByReference) != 0)
    release(static_cast<ByReference*>(object));
  else if ((kind & kBlock) == kBlock)
    _Block_release(held);
  else if (kind == kObject)
    [static_cast<id>(object) release];
}

}  // extern "C"
#pragma GCC visibility pop

// The class of every block, so that blocks answer the messages of objects.
@interface TestBlock : NSObject
@end

@implementation TestBlock
- (id)copy {
  return static_cast<id>(_Block_copy(self));
}
- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return static_cast<id>(_Block_copy(self));
}
- (id)retain {
  return static_cast<id>(_Block_copy(self));
}
- (oneway void)release {
  _Block_release(self);
}
@end

asm(".globl _NSConcreteStackBlock, _NSConcreteGlobalBlock\n"
    ".set _NSConcreteStackBlock, _OBJC_CLASS_TestBlock\n"
    ".set _NSConcreteGlobalBlock, _OBJC_CLASS_TestBlock\n");

// Blocks, as Apple's runtime has them.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
void* _Block_copy(const void* block);
void _Block_release(const void* block);
#ifdef __cplusplus
}
#endif

#define Block_copy(block) ((__typeof__(block))_Block_copy((const void*)(block)))
#define Block_release(block) _Block_release((const void*)(block))

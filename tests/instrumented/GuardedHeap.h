#pragma once

namespace ZOTDam::Test {

// Whether new blocks are guarded. Unguarded blocks are allocated from the C runtime's heap.
extern bool guardsNewBlocks;

}  // namespace ZOTDam::Test

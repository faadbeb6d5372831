#pragma once

namespace ZOTDam::Test {

// Whether new blocks are guarded; those that are not come from the ordinary heap.
extern bool guardsNewBlocks;

}  // namespace ZOTDam::Test

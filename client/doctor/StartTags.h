// The positions of the elements of a document, which the DOM does not report.
#pragma once

#include <string_view>
#include <vector>

#include "doctor/Position.h"

namespace ZOTDam::Client {

// Returns the position of each start tag of a well-formed document, in the order of the document. The root
// has the depth 1; tags below `maxDepth` are omitted. Columns are counted in characters in a file in UTF-8 or
// UTF-16, otherwise in bytes. Returns no positions for an encoding that does not contain ASCII.
std::vector<Position> FindStartTags(std::string_view content, std::size_t maxDepth);

}  // namespace ZOTDam::Client

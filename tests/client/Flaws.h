// The parts of the flaws that the tests of several files use.
#pragma once

#include "client/DoctorTest.h"

namespace ZOTDam::Test {

inline const std::string TooLong(TextCapacity, 't');

// Consequences.
inline const std::string Ignored = "the library ignores it";
inline const std::string IgnoredWithAll = "the library ignores it and its content";
inline const std::string OnlyTheFirst = "the library reads only the first one";

}  // namespace ZOTDam::Test

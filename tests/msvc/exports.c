/* The exports of the C examples, whose types are compared with those in ZOTDam.h. */
#include "exports.h"

extern const struct Exports exports;

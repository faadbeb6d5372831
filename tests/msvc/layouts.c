/* The layouts of the C examples. */
#include "zotdam_layouts.h"

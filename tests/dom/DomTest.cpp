#include "xml/Dom.h"

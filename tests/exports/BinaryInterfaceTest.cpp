#include "support/ExportTest.h"

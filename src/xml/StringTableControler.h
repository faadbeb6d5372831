#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// The texts that the user reads. The table is read once.
class CStringTableControler : public CZOTProfile {
public:
    CStringTableControler();
};

}  // namespace ZOTDam

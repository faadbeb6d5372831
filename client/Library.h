#pragma once

#include "ZOTDamClient.h"

namespace ZOTDam::Client {

// The library as the commands load it.
class Library : public ZOTDam::Library {
public:
    // Throws an Error if MSXML 6 is not available. The library itself does not report it.
    Library() : ZOTDam::Library{CheckedPath()} {}

    static std::filesystem::path Path() { return ProgramFolder() / L"ZOTDam.dll"; }

private:
    // Returns the path after checking MSXML 6.
    static std::filesystem::path CheckedPath();
};

}  // namespace ZOTDam::Client

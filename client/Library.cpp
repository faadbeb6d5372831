#include "Library.h"

#include "Msxml.h"

namespace ZOTDam::Client {

std::filesystem::path Library::CheckedPath() {
    const ComScope com;
    CreateDocument();
    return Path();
}

}  // namespace ZOTDam::Client

#include "ErrorReport.h"

#include "Error.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

const char* KindText(ErrorKind kind) {
    switch (kind) {
        case ErrorKind::Usage:
            return "usage";
        case ErrorKind::InUse:
            return "in-use";
        case ErrorKind::MissingFile:
            return "missing-file";
        case ErrorKind::UnreadableFile:
            return "unreadable-file";
        case ErrorKind::NotStored:
            return "not-stored";
        case ErrorKind::UnknownFunction:
            return "unknown-function";
        case ErrorKind::UnknownSetting:
            return "unknown-setting";
        case ErrorKind::InvalidValue:
            return "invalid-value";
        case ErrorKind::Failure:
            break;
    }
    return "failure";
}

const char* KindOf(const std::exception& error) {
    if (const auto* const known = dynamic_cast<const Error*>(&error))
        return KindText(known->Kind());
    return dynamic_cast<const LibraryError*>(&error) != nullptr ? "library" : KindText(ErrorKind::Failure);
}

Json FileOf(const std::exception& error) {
    const auto* const known = dynamic_cast<const Error*>(&error);
    return known != nullptr && known->File() ? Json(Utf8(*known->File())) : Json();
}

}  // namespace

Json ErrorJson(const std::exception& error) {
    return {{"error", {{"kind", KindOf(error)}, {"message", error.what()}, {"file", FileOf(error)}}}};
}

}  // namespace ZOTDam::Client

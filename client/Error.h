// Exceptions of the client. Each message is one sentence for the user.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace ZOTDam::Client {

// The reason of a failure, for programs that read the JSON output.
enum class ErrorKind : unsigned char {
    Failure,
    Usage,
    InUse,
    MissingFile,
    UnreadableFile,
    NotStored,
    UnknownFunction,
    UnknownSetting,
    InvalidValue,
};

// A command failed.
class Error : public std::runtime_error {
public:
    explicit Error(const std::string& message) : runtime_error{message} {}
    Error(ErrorKind errorKind, const std::string& message,
          std::optional<std::filesystem::path> errorFile = {})
        : runtime_error{message}, kind{errorKind}, file{std::move(errorFile)} {}

    ErrorKind Kind() const noexcept { return kind; }

    // Returns the file that the message names.
    const std::optional<std::filesystem::path>& File() const noexcept { return file; }

private:
    ErrorKind kind = ErrorKind::Failure;
    std::optional<std::filesystem::path> file;
};

// The command line is invalid.
class UsageError : public Error {
public:
    explicit UsageError(const std::string& message) : Error{ErrorKind::Usage, message} {}
};

}  // namespace ZOTDam::Client

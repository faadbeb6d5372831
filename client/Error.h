// Exceptions of the client. Each message is one sentence for the user.
#pragma once

#include <stdexcept>

namespace ZOTDam::Client {

// A command failed.
class Error : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The command line is invalid.
class UsageError : public Error {
    using Error::Error;
};

}  // namespace ZOTDam::Client

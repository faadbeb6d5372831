// What the client tells its user when it fails: one sentence.
#pragma once

#include <stdexcept>

namespace ZOTDam::Client {

// A command was not carried out.
class Error : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The command line makes no sense.
class UsageError : public Error {
    using Error::Error;
};

}  // namespace ZOTDam::Client

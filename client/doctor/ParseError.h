#pragma once

#include <oaidl.h>

#include <string>

#include "doctor/Position.h"

namespace ZOTDam::Client {

// The reason why a document is not well-formed.
struct ParseError {
    Position position;
    std::string reason;  // in the language of the parser, without a full stop; may be empty
};

// Parses a document with the SAX reader of MSXML 6. Unlike the DOM, it reports the position on all systems.
// Returns an empty reason if the reader finds no error.
ParseError FindParseError(const VARIANT& source);

}  // namespace ZOTDam::Client

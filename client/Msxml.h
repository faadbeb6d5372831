// MSXML 6, without which the library reads and writes no file.
#pragma once

#include <string>

#include "xml/ComOwners.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Client {

using Document = OwnedInterface<IXMLDOMDocument>;

// Creates a document that loads synchronously. COM must be initialised. Throws an Error if the system cannot
// create one.
Document CreateDocument();

// Returns the problem with the system's code if the system cannot create a document, or an empty string. Like
// a finding's problem, it is a clause without a full stop.
std::string FindMsxmlProblem();

}  // namespace ZOTDam::Client

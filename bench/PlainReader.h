// The reads of the library, written straight on MSXML: selections by XPath, attributes through the attribute
// map.
#pragma once

#include <comdef.h>

#include <filesystem>

#include "xml/Com.h"

namespace ZOTDam::Bench {

// A loaded document.
class PlainDocument {
public:
    explicit PlainDocument(const std::filesystem::path& file);

    IXMLDOMElementPtr root;

private:
    IXMLDOMDocument2Ptr document;
};

// Each gives a sum over all that it has read.
long PlainCatalogue(const std::filesystem::path& file);
long PlainScheme(const std::filesystem::path& file);
long PlainDefaults(const PlainDocument& defaults);

}  // namespace ZOTDam::Bench

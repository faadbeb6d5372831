#include "Msxml.h"

#include <cstdio>
#include <iterator>
#include <utility>

#include "Error.h"

namespace ZOTDam::Client {

namespace {

std::pair<Document, HRESULT> TryToCreate() {
    void* created = nullptr;
    const HRESULT result =
        CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument), &created);
    return {Document{static_cast<IXMLDOMDocument*>(created)}, result};
}

std::string ProblemOf(HRESULT result) {
    char code[] = "0x00000000";
    std::snprintf(code, std::size(code), "0x%08lx", static_cast<unsigned long>(result));
    return "the system cannot create a document of MSXML 6 (error " + std::string{code} + ")";
}

}  // namespace

Document CreateDocument() {
    auto [document, result] = TryToCreate();
    if (FAILED(result))
        throw Error{"The library cannot read the data files: " + ProblemOf(result) + "."};
    document->put_async(VARIANT_FALSE);
    return std::move(document);
}

std::string FindMsxmlProblem() {
    const auto [document, result] = TryToCreate();
    return FAILED(result) ? ProblemOf(result) : "";
}

}  // namespace ZOTDam::Client

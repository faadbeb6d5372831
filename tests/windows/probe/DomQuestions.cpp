// Questions about the DOM: loading, reading, changing and saving documents.
#include <objbase.h>

#include <comdef.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "windows/probe/Questions.h"
#include "xml/ComOwners.h"
#include "xml/DomInterfaces.h"
#include "xml/FileContent.h"
#include "xml/TextStream.h"

namespace ZOTDam::Probe {

namespace {

using Document = OwnedInterface<IXMLDOMDocument3>;

// Asks with COM initialised.
class Com {
public:
    Com() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
    ~Com() { CoUninitialize(); }
};

Document NewDocument() {
    void* created = nullptr;
    if (FAILED(CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument3), &created)))
        throw std::runtime_error{"There is no DOM."};
    Document document{static_cast<IXMLDOMDocument3*>(created)};
    document->put_async(VARIANT_FALSE);
    return document;
}

std::string Result(HRESULT result) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
    return text;
}

// ---- Loading ----

_variant_t ArrayOf(std::string_view content) {
    SAFEARRAY* const bytes = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(content.size()));
    std::copy(content.begin(), content.end(), static_cast<char*>(bytes->pvData));
    _variant_t array;
    V_VT(&array) = VT_ARRAY | VT_UI1;
    V_ARRAY(&array) = bytes;
    return array;
}

_variant_t StreamOf(std::string_view content) {
    IStream* const stream =
        SHCreateMemStream(reinterpret_cast<const BYTE*>(content.data()), static_cast<UINT>(content.size()));
    return {static_cast<IUnknown*>(stream), false};
}

// Returns "loaded", "refused", or the result of a call that failed.
std::string Load(IXMLDOMDocument& document, const _variant_t& source) {
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document.load(source, &isLoaded);
    if (FAILED(result))
        return Result(result);
    return isLoaded == VARIANT_TRUE ? "loaded" : "refused";
}

Document DocumentOf(std::string_view content) {
    Document document = NewDocument();
    Load(*document, ArrayOf(content));
    return document;
}

constexpr char Utf16Content[] = "\xFF\xFE<\0E\0/\0>\0";
constexpr std::string_view Utf16{Utf16Content, sizeof Utf16Content - 1};

std::string LoadArray() {
    return Load(*NewDocument(), ArrayOf("<E/>"));
}

std::string LoadArrayInUtf16() {
    return Load(*NewDocument(), ArrayOf(Utf16));
}

std::string LoadStreamInUtf16() {
    return Load(*NewDocument(), StreamOf(Utf16));
}

std::string LoadMalformedArray() {
    return Load(*NewDocument(), ArrayOf("<E>"));
}

std::string LoadMalformedStream() {
    return Load(*NewDocument(), StreamOf("<E>"));
}

std::string LoadDocumentType() {
    const Document document = NewDocument();
    const std::string outcome = Load(*document, ArrayOf("<!DOCTYPE E><E/>"));
    OwnedInterface<IXMLDOMParseError> error;
    IXMLDOMParseError* received = nullptr;
    long code = 0;
    if (outcome == "refused" && SUCCEEDED(document->get_parseError(&received))) {
        error.reset(received);
        error->get_errorCode(&code);
    }
    return code == 0 ? outcome : Result(code);
}

std::string LoadPathWith(const wchar_t* name) {
    const Folder folder;
    const std::wstring path = folder / name;
    std::ofstream{std::filesystem::path{path}} << "<E/>";
    return Load(*NewDocument(), _variant_t{path.c_str()});
}

std::string LoadPathWithNumberSign() {
    return LoadPathWith(L"a#b.xml");
}

std::string LoadPathWithPercentSign() {
    return LoadPathWith(L"a%20b.xml");
}

std::string RootAfterFailedLoad() {
    const Document document = DocumentOf("<E/>");
    Load(*document, ArrayOf("<E>"));
    IXMLDOMElement* root = nullptr;
    document->get_documentElement(&root);
    const OwnedInterface<IXMLDOMElement> owned{root};
    return YesOrNo(root != nullptr);
}

std::string RootAfterLoadingNothing() {
    const Document document = DocumentOf("<E/>");
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->loadXML(OwnedBstr{SysAllocString(L"")}.get(), &isLoaded);
    IXMLDOMElement* root = nullptr;
    document->get_documentElement(&root);
    const OwnedInterface<IXMLDOMElement> owned{root};
    return FAILED(result) ? Result(result) : YesOrNo(root != nullptr);
}

// ---- Reading ----

OwnedInterface<IXMLDOMElement> RootOf(IXMLDOMDocument& document) {
    IXMLDOMElement* root = nullptr;
    document.get_documentElement(&root);
    if (root == nullptr)
        throw std::runtime_error{"The document is empty."};
    return OwnedInterface<IXMLDOMElement>{root};
}

std::string TypeOf(const _variant_t& value) {
    switch (V_VT(&value)) {
        case VT_BSTR:
            return "string";
        case VT_NULL:
            return "null";
        case VT_EMPTY:
            return "empty";
        default:
            return "type " + std::to_string(V_VT(&value));
    }
}

std::string TypedValueOfEmptyElement() {
    const Document document = DocumentOf("<E/>");
    _variant_t value;
    const HRESULT result = RootOf(*document)->get_nodeTypedValue(&value);
    return FAILED(result) ? Result(result) : TypeOf(value);
}

std::string TypedValueOfEmptyAttribute() {
    const Document document = DocumentOf("<E A=''/>");
    IXMLDOMAttribute* attribute = nullptr;
    RootOf(*document)->getAttributeNode(OwnedBstr{SysAllocString(L"A")}.get(), &attribute);
    const OwnedInterface<IXMLDOMAttribute> owned{attribute};
    _variant_t value;
    const HRESULT result = attribute->get_nodeTypedValue(&value);
    return FAILED(result) ? Result(result) : TypeOf(value);
}

std::string TypedValueWithSpaces() {
    const Document document = DocumentOf("<E> a </E>");
    _variant_t value;
    RootOf(*document)->get_nodeTypedValue(&value);
    return V_VT(&value) == VT_BSTR && std::wstring_view{V_BSTR(&value)} == L"a" ? "trimmed" : "not trimmed";
}

std::string MissingAttribute() {
    const Document document = DocumentOf("<E/>");
    _variant_t value;
    return Result(RootOf(*document)->getAttribute(OwnedBstr{SysAllocString(L"A")}.get(), &value));
}

std::string NamespaceOfPlainElement() {
    const Document document = DocumentOf("<E/>");
    BSTR uri = nullptr;
    const HRESULT result = RootOf(*document)->get_namespaceURI(&uri);
    const OwnedBstr owned{uri};
    return FAILED(result) ? Result(result) : YesOrNo(SysStringLen(uri) > 0);
}

std::string NamespaceDeclarationsInMap() {
    const Document document = DocumentOf("<E xmlns:p='urn:p' A=''/>");
    IXMLDOMNamedNodeMap* attributes = nullptr;
    RootOf(*document)->get_attributes(&attributes);
    const OwnedInterface<IXMLDOMNamedNodeMap> owned{attributes};
    long count = 0;
    attributes->get_length(&count);
    return count == 2 ? "listed" : "not listed";
}

std::string NamespaceDeclarationsInSelection() {
    const Document document = DocumentOf("<E xmlns='' xmlns:p='urn:p' A=''/>");
    IXMLDOMNodeList* attributes = nullptr;
    RootOf(*document)->selectNodes(OwnedBstr{SysAllocString(L"@*")}.get(), &attributes);
    const OwnedInterface<IXMLDOMNodeList> owned{attributes};
    long count = 0;
    attributes->get_length(&count);
    return count == 1 ? "not listed" : "listed";
}

std::string ErrorInfoOfNode() {
    const Document document = DocumentOf("<E/>");
    void* support = nullptr;
    const HRESULT result = RootOf(*document)->QueryInterface(__uuidof(ISupportErrorInfo), &support);
    const OwnedInterface<IUnknown> owned{static_cast<IUnknown*>(support)};
    return YesOrNo(SUCCEEDED(result));
}

// ---- Changing ----

std::string ImportNode() {
    const Document source = DocumentOf("<E/>");
    const Document target = NewDocument();
    IXMLDOMNode* copy = nullptr;
    const HRESULT result = target->importNode(RootOf(*source).get(), VARIANT_TRUE, &copy);
    const OwnedInterface<IXMLDOMNode> owned{copy};
    return result == E_NOTIMPL ? "not implemented" : Result(result);
}

// Sets an attribute of the root. The result is that of a load of the saved document, or of the call if it
// failed.
std::string SetAttribute(const wchar_t* name, const wchar_t* value) {
    const Document document = DocumentOf("<E/>");
    const HRESULT result =
        RootOf(*document)->setAttribute(OwnedBstr{SysAllocString(name)}.get(), _variant_t{value});
    if (FAILED(result))
        return "not set";
    CTextStream stream;
    document->save(_variant_t{&stream});
    return Load(*NewDocument(), ArrayOf(stream.Text()));
}

std::string NameWithSpace() {
    return SetAttribute(L"a b", L"v");
}

// U+2C00 is a name character only since the fifth edition of XML 1.0.
std::string NameOfFifthEdition() {
    return SetAttribute(L"\u2C00", L"v");
}

std::string ForbiddenCharacter() {
    return SetAttribute(L"A", L"\x01");
}

// ---- Saving ----

std::string Saved(std::string_view content) {
    const Document document = DocumentOf(content);
    CTextStream stream;
    const HRESULT result = document->save(_variant_t{&stream});
    return FAILED(result) ? Result(result) : stream.Text();
}

std::string SaveToStreamThatOnlyWrites() {
    return YesOrNo(Saved("<E A='v'/>").starts_with("<E A=\"v\"/>"));
}

std::string AttributeWithLineBreaks() {
    const Document document = DocumentOf(Saved("<E A='&#9;&#10;&#13;'/>"));
    _variant_t value;
    RootOf(*document)->getAttribute(OwnedBstr{SysAllocString(L"A")}.get(), &value);
    return V_VT(&value) == VT_BSTR && std::wstring_view{V_BSTR(&value)} == L"\t\n\r" ? "kept" : "changed";
}

std::string SavedDeclaration() {
    const std::string text = Saved("<?xml version='1.0' encoding='UTF-8'?><E/>");
    const bool hasDoubleQuotes = text.find("\"UTF-8\"") != std::string::npos;
    const bool hasReturn = text.find("?>\r\n") != std::string::npos;
    return std::string{hasDoubleQuotes ? "double" : "single"} + " quotes, " + (hasReturn ? "CR LF" : "LF");
}

std::string WhiteSpaceBetweenElements() {
    return Saved("<E>\n\t<F/>\n</E>").find('\t') != std::string::npos ? "kept" : "removed";
}

// ---- The module ----

std::string ModuleAfterCom() {
    DocumentOf("<E/>").reset();
    CoUninitialize();
    const bool isLoaded = GetModuleHandleW(L"msxml6.dll") != nullptr;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    return isLoaded ? "loaded" : "unloaded";
}

// Asks a question with COM initialised. An exception is an answer.
template <std::string (*Ask)()>
std::string InApartment() {
    const Com com;
    try {
        return Ask();
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

}  // namespace

std::vector<Question> DomQuestions() {
    return {
        {"load-array", InApartment<LoadArray>, "loaded", "loaded"},
        {"load-array-in-utf-16", InApartment<LoadArrayInUtf16>, "loaded", "any"},
        {"load-stream-in-utf-16", InApartment<LoadStreamInUtf16>, "loaded", "loaded"},
        {"load-malformed-array", InApartment<LoadMalformedArray>, "refused", "refused"},
        {"load-malformed-stream", InApartment<LoadMalformedStream>, "refused", "refused or 0x80004005"},
        {"load-document-type", InApartment<LoadDocumentType>, "0xC00CE584", "any"},
        {"load-path-with-number-sign", InApartment<LoadPathWithNumberSign>, "?", "any"},
        {"load-path-with-percent-sign", InApartment<LoadPathWithPercentSign>, "?", "any"},
        {"root-after-failed-load", InApartment<RootAfterFailedLoad>, "no", "any"},
        {"root-after-loading-nothing", InApartment<RootAfterLoadingNothing>, "no", "no"},
        {"typed-value-of-empty-element", InApartment<TypedValueOfEmptyElement>, "?", "string or null"},
        {"typed-value-of-empty-attribute", InApartment<TypedValueOfEmptyAttribute>, "string", "any"},
        {"typed-value-with-spaces", InApartment<TypedValueWithSpaces>, "?", "any"},
        {"missing-attribute", InApartment<MissingAttribute>, "0x00000001", "0x00000001"},
        {"plain-element-has-namespace", InApartment<NamespaceOfPlainElement>, "no", "no"},
        {"namespace-declarations-in-map", InApartment<NamespaceDeclarationsInMap>, "?", "any"},
        {"namespace-declarations-in-selection", InApartment<NamespaceDeclarationsInSelection>, "not listed",
         "any"},
        {"error-info-of-node", InApartment<ErrorInfoOfNode>, "yes", "any"},
        {"import-node", InApartment<ImportNode>, "0x00000000", "0x00000000 or not implemented"},
        {"name-with-space", InApartment<NameWithSpace>, "not set", "any"},
        {"name-of-fifth-edition", InApartment<NameOfFifthEdition>, "?", "any"},
        {"forbidden-character", InApartment<ForbiddenCharacter>, "?", "any"},
        {"save-only-writes", InApartment<SaveToStreamThatOnlyWrites>, "yes", "yes"},
        {"attribute-with-line-breaks", InApartment<AttributeWithLineBreaks>, "?", "any"},
        {"saved-declaration", InApartment<SavedDeclaration>, "?", "any"},
        {"white-space-between-elements", InApartment<WhiteSpaceBetweenElements>, "?", "any"},
        {"module-after-com", InApartment<ModuleAfterCom>, "unloaded", "any"},
    };
}

}  // namespace ZOTDam::Probe

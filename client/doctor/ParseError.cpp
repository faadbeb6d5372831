#include "doctor/ParseError.h"

#include "Text.h"
#include "xml/ComOwners.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Client {

namespace {

// mingw-w64 before version 12 declares neither the CLSID nor the IIDs.
constexpr CLSID SaxReader60 = {0x88d96a0c, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr IID SaxReaderInterface = {
    0xa4f96ed0, 0xf829, 0x476e, {0x81, 0xc0, 0xcd, 0xc7, 0xbd, 0x2a, 0x08, 0x02}};
constexpr IID SaxErrorHandlerInterface = {
    0xa60511c4, 0xccf5, 0x479e, {0x98, 0xa3, 0xdc, 0x8d, 0xc5, 0x45, 0xb7, 0xd0}};

// Stores the first error. The object is on the stack, so references are not counted.
class ErrorHandler final : public ISAXErrorHandler {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool isKnown = iid == IID_IUnknown || iid == SaxErrorHandlerInterface;
        *object = isKnown ? this : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE error(ISAXLocator* locator, const wchar_t* message, HRESULT) override {
        return Store(locator, message);
    }
    HRESULT STDMETHODCALLTYPE fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT) override {
        return Store(locator, message);
    }
    HRESULT STDMETHODCALLTYPE ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override {
        return S_OK;
    }

    const ParseError& Error() const noexcept { return found; }

private:
    HRESULT Store(ISAXLocator* locator, std::wstring_view message) {
        int line = 0;
        int column = 0;
        if (found.position.line == 0 && locator->getLineNumber(&line) == S_OK &&
            locator->getColumnNumber(&column) == S_OK) {
            found.position = {static_cast<std::size_t>(line), static_cast<std::size_t>(column)};
            message.remove_suffix(message.size() - (message.find_last_not_of(L" .\r\n") + 1));
            found.reason = ToUtf8(message);
        }
        return S_OK;
    }

    ParseError found;
};

}  // namespace

ParseError FindParseError(const VARIANT& source) {
    void* created = nullptr;
    if (FAILED(CoCreateInstance(SaxReader60, nullptr, CLSCTX_ALL, SaxReaderInterface, &created)))
        return {};
    const OwnedInterface<ISAXXMLReader> reader{static_cast<ISAXXMLReader*>(created)};
    ErrorHandler handler;
    reader->putErrorHandler(&handler);
    reader->parse(source);
    reader->putErrorHandler(nullptr);
    return handler.Error();
}

}  // namespace ZOTDam::Client

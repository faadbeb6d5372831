// Replaces methods of the DOM with functions of the test. All objects of a class share one table.
#pragma once

#include <objbase.h>

#include <oleauto.h>

#include <optional>
#include <stdexcept>

#include "support/SlotPatch.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

enum class DomMethod {
    RemoveChild,
    AppendChild,
    GetOwnerDocument,
    CloneNode,
    PutText,
    GetElementTypedValue,
    GetAttributeName,
    GetAttributeTypedValue,
    GetAttribute,
    SetAttribute,
    GetNamedItem,
    RemoveNamedItem,
    GetItem,
    GetLength,
    GetSelectionItem,
    GetSelectionLength,
    CreateElement,
    Load,
    Save,
    ImportNode
};

class DomMethodPatch {
public:
    template <class Function>
    DomMethodPatch(DomMethod method, Function replacement) {
        patch.emplace(Slot(method), replacement);
    }
    DomMethodPatch(const DomMethodPatch&) = delete;
    DomMethodPatch& operator=(const DomMethodPatch&) = delete;
    ~DomMethodPatch() {
        patch.reset();
        selection->Release();
        attribute->Release();
        attributes->Release();
        element->Release();
        document->Release();
    }

    template <class Function>
    Function* Original() const noexcept {
        return patch->Original<Function>();
    }

private:
    // The numbers are the positions of the methods in the function tables of their interfaces.
    void** Slot(DomMethod method) {
        MakeObjects();
        switch (method) {
            case DomMethod::RemoveChild:
                return Table(element) + 20;
            case DomMethod::AppendChild:
                return Table(element) + 21;
            case DomMethod::GetOwnerDocument:
                return Table(element) + 23;
            case DomMethod::CloneNode:
                return Table(element) + 24;
            case DomMethod::PutText:
                return Table(element) + 27;
            case DomMethod::GetElementTypedValue:
                return Table(element) + 30;
            case DomMethod::GetAttributeName:
                return Table(attribute) + 7;
            case DomMethod::GetAttributeTypedValue:
                return Table(attribute) + 30;
            case DomMethod::GetAttribute:
                return Table(element) + 44;
            case DomMethod::SetAttribute:
                return Table(element) + 45;
            case DomMethod::GetNamedItem:
                return Table(attributes) + 7;
            case DomMethod::RemoveNamedItem:
                return Table(attributes) + 9;
            case DomMethod::GetItem:
                return Table(attributes) + 10;
            case DomMethod::GetLength:
                return Table(attributes) + 11;
            case DomMethod::GetSelectionItem:
                return Table(selection) + 7;
            case DomMethod::GetSelectionLength:
                return Table(selection) + 8;
            case DomMethod::CreateElement:
                return Table(document) + 47;
            case DomMethod::Load:
                return Table(document) + 58;
            case DomMethod::Save:
                return Table(document) + 66;
            default:
                return Table(document) + 83;
        }
    }

    static void** Table(IUnknown* object) { return *reinterpret_cast<void***>(object); }

    // One object of each class. They live as long as the patch, because unloading the DOM unloads its tables.
    void MakeObjects() {
        void* created = nullptr;
        if (FAILED(
                CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument3), &created)))
            throw std::runtime_error{"there is no DOM"};
        document = static_cast<IXMLDOMDocument2*>(created);
        const BSTR name = SysAllocString(L"E");
        document->createElement(name, &element);
        document->createAttribute(name, &attribute);
        SysFreeString(name);
        element->get_attributes(&attributes);
        const BSTR allAttributes = SysAllocString(L"@*");
        element->selectNodes(allAttributes, &selection);
        SysFreeString(allAttributes);
    }

    IXMLDOMDocument2* document = nullptr;
    IXMLDOMElement* element = nullptr;
    IXMLDOMNamedNodeMap* attributes = nullptr;
    IXMLDOMAttribute* attribute = nullptr;
    IXMLDOMNodeList* selection = nullptr;
    std::optional<SlotPatch> patch;
};

// Makes every call of a method fail for a scope. It ignores the arguments.
class FailingDomMethod : public DomMethodPatch {
public:
    explicit FailingDomMethod(DomMethod method)
        : DomMethodPatch{method, []() -> HRESULT { return E_FAIL; }} {}
};

// Makes the n-th call of a method fail for a scope. The other calls are forwarded to the DOM with their
// arguments, which fit in four registers.
class DomMethodFailingOnce : public DomMethodPatch {
public:
    DomMethodFailingOnce(DomMethod method, int call) : DomMethodPatch{method, &Count} {
        original = Original<Method>();
        callsUntilFailure = call;
    }

    static bool HasFailed() noexcept { return callsUntilFailure <= 0; }

private:
    using Method = HRESULT WINAPI(void*, void*, void*, void*);

    static HRESULT WINAPI Count(void* object, void* first, void* second, void* third) {
        return --callsUntilFailure == 0 ? E_FAIL : original(object, first, second, third);
    }

    inline static Method* original = nullptr;
    inline static int callsUntilFailure = 0;
};

}  // namespace ZOTDam::Test

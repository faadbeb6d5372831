// Intercepts the calls that the library makes to the DOM while an object of this class exists. A test can
// make a call fail, and can query how many references to DOM objects the library holds.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "support/ImportPatch.h"
#include "support/LoadedImage.h"
#include "support/XmlTree.h"

#ifdef _MSC_VER
#include <intrin.h>
#define ZOTDAM_RETURN_ADDRESS() _ReturnAddress()
#else
#define ZOTDAM_RETURN_ADDRESS() __builtin_return_address(0)
#endif

namespace ZOTDam::Test {

class DomCalls {
public:
    // Starts counting the calls of a DLL. The patch must be destroyed before the DLL is freed.
    static ImportPatch Track(HMODULE dll) {
        image = reinterpret_cast<std::uintptr_t>(dll);
        imageSize = LoadedImage{dll}.Headers().OptionalHeader.SizeOfImage;
        acquired = 0;
        released = 0;
        failInstructions = false;
        return ImportPatch{dll, "CoCreateInstance", &Create};
    }

    // The number of references that the DLL has acquired and not released.
    static long long HeldReferences() noexcept { return acquired - released; }
    static long long AcquiredReferences() noexcept { return acquired; }

    // Queried at each call unless null. If it returns true, the call fails with an out-of-memory error.
    inline static bool (*mustFail)() = nullptr;

    // If true, creating a processing instruction fails. A new file then has no XML declaration.
    inline static bool failInstructions = false;

    // The replacement for the system's function. A test may install its own function that calls this one.
    static HRESULT WINAPI Create(REFCLSID type, IUnknown* outer, DWORD context, REFIID iid, void** object) {
        const HRESULT result = CoCreateInstance(type, outer, context, iid, object);
        acquired += SUCCEEDED(result) && IsCounted(*object);
        return result;
    }

private:
    enum class Class { Document, Element, Attributes, Selection, OtherNode, ErrorSupport };

    using Method = HRESULT WINAPI(void*, void*, void*, void*);
    static constexpr std::size_t AddRefSlot = 1;
    static constexpr std::size_t ReleaseSlot = 2;
    static constexpr std::size_t CreateInstructionSlot = 52;

    // ---- The argument of a method that receives an object; 0 if there is none ----

    static constexpr int ReceiverOfAnyNode(std::size_t slot) {
        switch (slot) {
            case 18:  // insertBefore
            case 19:  // replaceChild
                return 3;
            case 0:   // QueryInterface
            case 20:  // removeChild
            case 21:  // appendChild
            case 24:  // cloneNode
            case 36:  // selectNodes
                return 2;
            case 23:  // get_ownerDocument
                return 1;
            default:  // get_parentNode, the other neighbours, get_attributes
                return slot >= 11 && slot <= 17 ? 1 : 0;
        }
    }

    static constexpr int ReceiverOfADocument(std::size_t slot) {
        switch (slot) {
            case CreateInstructionSlot:
            case 83:  // importNode
                return 3;
            case 47:  // createElement
            case 49:  // createTextNode
            case 53:  // createAttribute
                return 2;
            case 45:  // get_documentElement
                return 1;
            default:
                return ReceiverOfAnyNode(slot);
        }
    }

    static constexpr int Receiver(Class type, std::size_t slot) {
        switch (type) {
            case Class::Document:
                return ReceiverOfADocument(slot);
            case Class::Element:  // getAttributeNode, setAttributeNode, removeAttributeNode
                return slot >= 47 && slot <= 49 ? 2 : ReceiverOfAnyNode(slot);
            case Class::Attributes:  // getNamedItem, setNamedItem, removeNamedItem, get_item
                return slot == 0 || (slot >= 7 && slot <= 10) ? 2 : 0;
            case Class::Selection:  // QueryInterface, get_item
                return slot == 0 || slot == 7 ? 2 : 0;
            case Class::ErrorSupport:  // QueryInterface
                return slot == 0 ? 2 : 0;
            default:
                return ReceiverOfAnyNode(slot);
        }
    }

    // ---- The calls ----

    static bool IsOfTheDll(const void* caller) noexcept {
        return reinterpret_cast<std::uintptr_t>(caller) - image < imageSize;
    }

    static bool IsCounted(void* object) noexcept {
        return object != nullptr && std::ranges::count(tables, *static_cast<void***>(object)) != 0;
    }

    static HRESULT Fail(void** receiver) noexcept {
        if (receiver != nullptr)
            *receiver = nullptr;
        return E_OUTOFMEMORY;
    }

    template <class Call>
    static HRESULT Answer(void** receiver, Call call) {
        if (mustFail != nullptr && mustFail())
            return Fail(receiver);
        const HRESULT result = call();
        acquired += SUCCEEDED(result) && receiver != nullptr && IsCounted(*receiver);
        return result;
    }

    // Marks that a call of the DLL is in progress while an object of this class exists. To perform it, the
    // DOM may call its own methods. Some of these calls are jumps, which keep the return address in the DLL.
    class CallInProgress {
    public:
        CallInProgress() noexcept { isCallInProgress = true; }
        CallInProgress(const CallInProgress&) = delete;
        CallInProgress& operator=(const CallInProgress&) = delete;
        ~CallInProgress() { isCallInProgress = false; }
    };

    // Replaces the functions in the table that all objects of a kind share. A DOM may not support a kind of
    // object. If two kinds share one table, the first one replaces its functions.
    template <std::size_t Kind, Class Type, std::size_t Size>
    class Table {
    public:
        explicit Table(IUnknown* object) : table{NewTableOf(object)} {
            if (table == nullptr)
                return;
            std::copy_n(table, Size, originals.begin());
            tables[Kind] = table;
            Write(Hooks(std::make_index_sequence<Size>{}));
        }
        Table(const Table&) = delete;
        Table& operator=(const Table&) = delete;
        ~Table() {
            if (table == nullptr)
                return;
            Write(originals);
            tables[Kind] = nullptr;
        }

    private:
        using Slots = std::array<void*, Size>;

        static void** NewTableOf(IUnknown* object) noexcept {
            return object == nullptr || IsCounted(object) ? nullptr : *reinterpret_cast<void***>(object);
        }

        // The methods of IDispatch and createNode have too many arguments to be forwarded, and the library
        // does not call them. InterfaceSupportsErrorInfo occupies one of their slots. It does not return an
        // object.
        static constexpr bool IsHooked(std::size_t slot) { return slot < 3 || (slot >= 7 && slot != 56); }

        template <std::size_t... Indices>
        static Slots Hooks(std::index_sequence<Indices...>) {
            return {(IsHooked(Indices) ? reinterpret_cast<void*>(&Hook<Indices>) : originals[Indices])...};
        }

        void Write(const Slots& functions) noexcept {
            DWORD protection = 0;
            VirtualProtect(table, sizeof functions, PAGE_READWRITE, &protection);
            std::ranges::copy(functions, table);
            VirtualProtect(table, sizeof functions, protection, &protection);
        }

        template <std::size_t Slot>
        static HRESULT WINAPI Hook(void* object, void* first, void* second, void* third) {
            const auto call = [&] {
                return reinterpret_cast<Method*>(originals[Slot])(object, first, second, third);
            };
            if (isCallInProgress || !IsOfTheDll(ZOTDAM_RETURN_ADDRESS()))
                return call();
            const CallInProgress inProgress;
            if constexpr (Slot == AddRefSlot || Slot == ReleaseSlot) {
                ++(Slot == AddRefSlot ? acquired : released);
                return call();
            } else {
                constexpr int receiver = Receiver(Type, Slot);
                void* const arguments[] = {nullptr, first, second, third};
                auto** const received = static_cast<void**>(arguments[receiver]);
                if (Type == Class::Document && Slot == CreateInstructionSlot && failInstructions)
                    return Fail(received);
                return Answer(received, call);
            }
        }

        inline static Slots originals = {};
        void** table;
    };

    static OwnedInterface<IXMLDOMNamedNodeMap> AttributesOf(const Node& element) {
        IXMLDOMNamedNodeMap* attributes = nullptr;
        element.get()->get_attributes(&attributes);
        return OwnedInterface<IXMLDOMNamedNodeMap>{attributes};
    }

    static OwnedInterface<IXMLDOMNodeList> AttributeSelectionOf(const Node& element) {
        IXMLDOMNodeList* selection = nullptr;
        element.get()->selectNodes(OwnedBstr{SysAllocString(L"@*")}.get(), &selection);
        return OwnedInterface<IXMLDOMNodeList>{selection};
    }

    // Returns null if the object does not support ISupportErrorInfo.
    static OwnedInterface<IUnknown> ErrorSupportOf(IUnknown* object) {
        void* support = nullptr;
        object->QueryInterface(IID_ISupportErrorInfo, &support);
        return OwnedInterface<IUnknown>{static_cast<IUnknown*>(support)};
    }

    inline static std::uintptr_t image = 0;
    inline static std::uintptr_t imageSize = 0;
    inline static long long acquired = 0;
    inline static long long released = 0;
    inline static bool isCallInProgress = false;
    inline static std::array<void**, 18> tables = {};

    // One object of each kind. They live as long as the patches, because unloading the DOM unloads its
    // tables.
    ComScope com;
    XmlTree tree = XmlTree::OfText(L"<?i d?><E a=\"v\">text<!--c--><F/><![CDATA[d]]></E>");
    Node document = tree.Find(L"/");
    Node instruction = tree.Find(L"/processing-instruction()");
    Node element = tree.Root();
    Node attribute = tree.Find(L"/E/@a");
    Node text = tree.Find(L"/E/text()[1]");
    Node comment = tree.Find(L"/E/comment()");
    Node cdata = tree.Find(L"/E/text()[2]");
    OwnedInterface<IXMLDOMNamedNodeMap> attributes = AttributesOf(element);
    OwnedInterface<IXMLDOMNodeList> selection = AttributeSelectionOf(element);

    Table<0, Class::Document, 84> documentTable{document.get()};
    Table<1, Class::OtherNode, 46> instructionTable{instruction.get()};
    Table<2, Class::Element, 52> elementTable{element.get()};
    Table<3, Class::OtherNode, 43> attributeTable{attribute.get()};
    Table<4, Class::OtherNode, 43> textTable{text.get()};
    Table<5, Class::OtherNode, 43> commentTable{comment.get()};
    Table<6, Class::OtherNode, 43> cdataTable{cdata.get()};
    Table<7, Class::Attributes, 13> attributesTable{attributes.get()};
    Table<8, Class::Selection, 12> selectionTable{selection.get()};

    // For ISupportErrorInfo, an object returns a reference to another object or to a part of itself.
    template <std::size_t Kind>
    using ErrorSupportTable = Table<Kind, Class::ErrorSupport, 4>;
    ErrorSupportTable<9> documentErrors{ErrorSupportOf(document.get()).get()};
    ErrorSupportTable<10> instructionErrors{ErrorSupportOf(instruction.get()).get()};
    ErrorSupportTable<11> elementErrors{ErrorSupportOf(element.get()).get()};
    ErrorSupportTable<12> attributeErrors{ErrorSupportOf(attribute.get()).get()};
    ErrorSupportTable<13> textErrors{ErrorSupportOf(text.get()).get()};
    ErrorSupportTable<14> commentErrors{ErrorSupportOf(comment.get()).get()};
    ErrorSupportTable<15> cdataErrors{ErrorSupportOf(cdata.get()).get()};
    ErrorSupportTable<16> attributesErrors{ErrorSupportOf(attributes.get()).get()};
    ErrorSupportTable<17> selectionErrors{ErrorSupportOf(selection.get()).get()};
};

}  // namespace ZOTDam::Test

// Detects values that change between a save and the next load. Some DOMs may write a tab or a line break in
// an attribute without a character reference. A parser then reads a space instead.
#pragma once

#include <string_view>

#include "xml/DomInterfaces.h"

namespace ZOTDam {

// Notes a value that the library writes to a document.
void NoteWrittenValue(std::wstring_view value) noexcept;

// Notes the content of a file that the library loads.
void NoteLoadedContent(std::string_view bytes);

// Returns whether a document may have a value that a save can change. Files rarely contain such values, so
// most saves need no further check.
bool HasCriticalValues() noexcept;

// Returns whether two trees have the same elements in the same order, with the same attributes. Ignores
// namespace declarations. Throws a _com_error when the DOM reports a failure.
bool HaveEqualAttributes(IXMLDOMNode* left, IXMLDOMNode* right);

}  // namespace ZOTDam

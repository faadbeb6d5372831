#include <stdio.h>
#include <string.h>

#include "examples.h"

/* [begin GetCommandInfo] */
static void PrintCommand(IGetCommandInfoCallback* self, const CommandInfoRecord* command) {
    (void)self;
    printf("command %d, event %d, state %d: options %d and %d, \"%s\"\n", command->id, command->event,
           command->state, command->option1, command->option2, ToUtf8(command->specInfo1));
}

void ListCommands(const struct Exports* zd, const GUID* scheme) {
    static const IGetCommandInfoCallbackTable table = {PrintCommand};
    IGetCommandInfoCallback callback = {&table};
    zd->GetCommandInfo(scheme, &callback);
}
/* [end GetCommandInfo] */

/* [begin GetDiffFuncList] */
/* Terminates the string after its first line and returns the rest. A line ends with a line feed and a
 * carriage return. */
static wchar_t* EndLine(wchar_t* text) {
    wchar_t* const end = wcsstr(text, L"\n\r");
    if (end == NULL)
        return text + wcslen(text);
    *end = L'\0';
    return end + 2;
}

void ListDifferences(const struct Exports* zd, const GUID* schemeA, const GUID* schemeB) {
    const uint32_t ac = 1; /* 2: on battery */
    wchar_t names[ZOTDAM_TEXT_CAPACITY];
    wchar_t values[ZOTDAM_TEXT_CAPACITY];
    wchar_t* name = names;
    wchar_t* value = values;
    if (!zd->GetDiffFuncList(schemeA, schemeB, ac, names, values)) {
        puts("no difference");
        return;
    }
    /* Each string is truncated separately, so one may have fewer lines than the other. */
    while (*name != L'\0') {
        wchar_t* const nextName = EndLine(name);
        wchar_t* const nextValue = EndLine(value);
        printf("%s: %s\n", ToUtf8(name), ToUtf8(value));
        name = nextName;
        value = nextValue;
    }
}
/* [end GetDiffFuncList] */

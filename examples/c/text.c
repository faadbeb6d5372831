#include "examples.h"

const char* ToUtf8(const wchar_t* text) {
    /* A UTF-16 code unit takes up to three bytes. */
    static char texts[4][3 * ZOTDAM_TEXT_CAPACITY];
    static unsigned int next;
    char* const utf8 = texts[next++ % 4];
    if (WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8, sizeof texts[0], NULL, NULL) == 0)
        utf8[0] = '\0';
    return utf8;
}

const char* YesOrNo(bool answer) {
    return answer ? "yes" : "no";
}

// GUIDs, as far as the headers of the library need them.
#pragma once

typedef struct {
    unsigned long Data1;
    unsigned short Data2;
    unsigned short Data3;
    unsigned char Data4[8];
} GUID;

/* A host in plain C: plain_c_host LIBRARY SAMPLE COPY converts a copy of the sample. */
#include "api/exports.h"

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef int32_t (*Conversion)(char* path, char* message);

static int copyFile(const char* from, const char* to) {
    FILE* in = fopen(from, "rb");
    FILE* out = fopen(to, "wb");
    int byte = in && out ? 0 : EOF;
    while (byte != EOF && (byte = fgetc(in)) != EOF) {
        fputc(byte, out);
    }
    return in && out && fclose(in) == 0 && fclose(out) == 0;
}

int main(int count, char** arguments) {
    if (count != 4 || !copyFile(arguments[2], arguments[3])) {
        return 2;
    }
    void* library = dlopen(arguments[1], RTLD_NOW);
    if (!library) {
        puts(dlerror());
        return 1;
    }
    Conversion convert;
    *(void**)&convert = dlsym(library, "Andi2Merivolta");

    char path[1024];
    char message[1024 + KORLIT_MESSAGE_ROOM];
    snprintf(path, sizeof path - KORLIT_PATH_ROOM, "%s", arguments[3]);
    const int32_t result = convert(path, message);
    puts(message);
    dlclose(library);
    return result == 1 && strstr(message, "Wrote Merivolta file ") == message ? 0 : 1;
}

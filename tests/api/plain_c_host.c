/* A host in plain C: plain_c_host LIBRARY SAMPLE COPY converts a copy of the sample. */
#include "api/exports.h"

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

int main(int count, char** arguments) {
    char command[2048];
    char path[1024 + KORLIT_PATH_ROOM];
    char message[1024 + KORLIT_MESSAGE_ROOM] = "";
    int32_t (*convert)(char* path, char* message);
    void* library = count == 4 ? dlopen(arguments[1], RTLD_NOW) : NULL;
    if (!library) {
        return 2;
    }
    snprintf(command, sizeof command, "cp '%s' '%s'", arguments[2], arguments[3]);
    snprintf(path, 1024, "%s", arguments[3]);
    *(void**)&convert = dlsym(library, "Andi2Merivolta");
    const int32_t result = system(command) == 0 ? convert(path, message) : 0;
    puts(message);
    dlclose(library);
    return result == 1 && strstr(message, "Wrote Merivolta file ") == message ? 0 : 1;
}

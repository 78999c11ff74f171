/* In front of the library: what it has written comes out with one bit changed. $ODD_FILE is what
   the name of the file to change ends in behind the stem of its source, $ODD_PLACE the byte. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <limits.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Counted from the end where the place is negative. */
static void changeByte(const char* file, long place) {
    FILE* stream = fopen(file, "r+b");
    if (stream == NULL) {
        return;
    }
    fseek(stream, place, place < 0 ? SEEK_END : SEEK_SET);
    const int byte = fgetc(stream);
    fseek(stream, place, place < 0 ? SEEK_END : SEEK_SET);
    fputc(byte ^ 1, stream);
    fclose(stream);
}

static int32_t convert(const char* name, char* path, char* message) {
    char file[PATH_MAX];
    strcpy(file, path);
    char* ending = strrchr(file, '.');
    strcpy(ending, getenv("ODD_FILE"));
    int32_t (*real)(char*, char*) = NULL;
    *(void**)&real = dlsym(RTLD_NEXT, name);
    const int32_t result = real(path, message);
    changeByte(file, atol(getenv("ODD_PLACE")));
    return result;
}

int32_t Andi2Merivolta(char* path, char* message) {
    return convert(__func__, path, message);
}
int32_t Merivolta2Andi(char* path, char* message) {
    return convert(__func__, path, message);
}
int32_t Dunvale2Andi(char* path, char* message) {
    return convert(__func__, path, message);
}

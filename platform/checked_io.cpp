#include "platform/checked_io.h"

#include "platform/files.h"

namespace korlit {

namespace {

std::int32_t ReadErrorFlag = 0;
std::int32_t WriteErrorFlag = 0;

} // namespace

void beginReading() {
    ReadErrorFlag = 0;
}

void beginWriting() {
    WriteErrorFlag = 0;
}

bool hasReadFailed() {
    return ReadErrorFlag != 0;
}

bool hasWriteFailed() {
    return WriteErrorFlag != 0;
}

void setReadFailed() {
    ReadErrorFlag = 1;
}

void setWriteFailed() {
    WriteErrorFlag = 1;
}

std::int32_t ReadChecked(int file, void* target, std::int64_t byteCount) {
    if (!hasReadFailed() && _hread(file, target, byteCount) != byteCount) {
        setReadFailed();
    }
    return ReadErrorFlag;
}

std::int32_t WriteChecked(int file, const void* source, std::int64_t byteCount) {
    if (!hasWriteFailed() && _hwrite(file, source, byteCount) != byteCount) {
        setWriteFailed();
    }
    return WriteErrorFlag;
}

void FlushWritten(int file) {
    if (_lflush(file) == fileError) {
        setWriteFailed();
    }
}

void CloseWritten(int file) {
    if (_lclose(file) == fileError) {
        setWriteFailed();
    }
}

} // namespace korlit

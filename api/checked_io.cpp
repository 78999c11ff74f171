#include "api/checked_io.h"

#include "platform/files.h"

namespace korlit {

std::int32_t ReadErrorFlag = 0;
std::int32_t WriteErrorFlag = 0;

std::int32_t ReadChecked(int file, void* target, std::int64_t byteCount) {
    if (ReadErrorFlag == 0) {
        ReadErrorFlag = _hread(file, target, byteCount) == byteCount ? 0 : 1;
    }
    return ReadErrorFlag;
}

std::int32_t WriteChecked(int file, const void* source, std::int64_t byteCount) {
    if (WriteErrorFlag == 0) {
        WriteErrorFlag = _hwrite(file, source, byteCount) == byteCount ? 0 : 1;
    }
    return WriteErrorFlag;
}

void CloseWritten(int file) {
    if (_lclose(file) == fileError) {
        WriteErrorFlag = 1;
    }
}

} // namespace korlit

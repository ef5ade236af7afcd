// The system information service, answered in memory in place of the real one.
#include "csi.h"

#include <cstring>

int32_t csi_get(uint8_t key, uint32_t size, uint32_t *length, uint8_t *buffer)
{
    if (size == 0) {
        return -1;
    }
    *length = 1;
    *buffer = key;
    return 0;
}

int32_t csi_set(uint8_t, const uint8_t *, uint32_t)
{
    return 0;
}

ZVCSIListener &ZVCSIListener::GetInstance()
{
    static ZVCSIListener listener;
    return listener;
}

int ZVCSIListener::GetCSIValue(uint32_t key, uint32_t &value)
{
    value = key;
    return 0;
}

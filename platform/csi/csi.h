/*
 * csi.h - the camera system information service
 *
 * A store of small values under numeric keys, shared by the processes of one machine. On the camera it is a closed
 * library; this header names the entry points that the project relies on.
 */
#ifndef ZVCTRL_CSI_H
#define ZVCTRL_CSI_H

#include <stdint.h>

#define CSI_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies the value of `key` into `buffer`, at most `size` bytes, and stores the whole value's length in `length`: a
 * length above `size` says that the value was cut. Returns 0, or a negative number when the key has no value or the
 * arguments are unusable; `length` and `buffer` are untouched then. Any thread may call.
 */
CSI_API int32_t csi_get(uint8_t key, uint32_t size, uint32_t *length, uint8_t *buffer);

/*
 * Stores `length` bytes as the value of `key`. Readers see the old value or the new one, never a part. Returns 0, or a
 * negative number when the value could not be stored; the old value is kept then. Any thread may call.
 */
CSI_API int32_t csi_set(uint8_t key, const uint8_t *value, uint32_t length);

#ifdef __cplusplus
}

/* The listener answers numeric keys: the same keys as csi_get, the value read as a little-endian number. */
class CSI_API ZVCSIListener {
  public:
    static ZVCSIListener &GetInstance();

    /* Stores the number under `key` in `value` and returns 0, or returns a negative number and leaves `value` alone. */
    int GetCSIValue(uint32_t key, uint32_t &value);
};

#endif

#endif
